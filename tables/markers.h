// For tables/ only: the texts that frame a table.
#ifndef KORVEL_TABLES_MARKERS_H
#define KORVEL_TABLES_MARKERS_H

#include <string_view>

namespace korvel::tables {

inline constexpr std::string_view kVersionMark = "Version: ";
inline constexpr std::string_view kBeginMark = "#DEBUT";
inline constexpr std::string_view kEndMark = "#FIN";

}  // namespace korvel::tables

#endif
