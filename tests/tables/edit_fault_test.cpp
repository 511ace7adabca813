// SPDX-License-Identifier: MIT
// Edits that are killed, and edits of many processes at once: what the table is afterwards.
#include <random>
#include <signal.h>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/tables/edit_model.h"
#include "tests/tables/edits.h"

namespace korvel {
namespace {

using test::content;
using test::EditModel;
using test::Files;
using test::insertLine;
using test::lines;
using test::lookUp;
using test::replaceColumn;

// What a kill between two steps may leave besides.
bool isHiddenTemporary(const std::string &name) { return name.starts_with(".korvel-"); }

Files visible(Files files) {
  std::erase_if(files, [](const auto &file) { return isHiddenTemporary(file.first); });
  return files;
}

std::string textOf(int round) { return "texte " + std::to_string(round); }

class Killed : public test::Edits {
 protected:
  void reset() {
    for (const std::string &name : test::entries(folder())) unlink((folder() + "/" + name).c_str());
    volumes_.file("tables/actes.bak", "old back-up");
    table("other", "another table");
    ZRV_Libelle_NC_set_ligne(6);
  }
};

// The child makes a sequence of edits that the model makes as well, and says when each is done; it
// is killed at any moment. The table is then what the model says after the last one, or after the
// one that was going on.
class KilledAnyTime : public Killed {
 protected:
  static constexpr int kEdits = 400;

  static std::string initial() {
    std::string text = test::actes();
    for (int i = 0; i < 40; ++i) text += std::to_string(i) + ",Libell\xE9\r\n";
    return text;
  }

  // Edit number i, on the library or on the model.
  template <typename On>
  static void edit(On &&on, int i, unsigned seed) {
    std::mt19937 random(seed + static_cast<unsigned>(i) * 7919U);
    const std::string text = textOf(i);
    on.setLine(1 + static_cast<int>(random() % 30));
    switch (random() % 7) {
      case 0:
        return on.replace(1, text);
      case 1:
        return on.insert(static_cast<int>(random() % 4));
      case 2:
        return on.remove();
      case 3:
        return on.modify(text);
      case 4:
        return on.repair(text);
      default:
        return on.setAndFlush(text);
    }
  }

  struct OnLibrary {
    void setLine(int line) { ZRV_Libelle_NC_set_ligne(line); }
    void replace(int column, const std::string &text) { replaceColumn(column, text.c_str()); }
    void insert(int fields) { insertLine(fields); }
    void remove() { test::deleteLine(); }
    void modify(const std::string &text) {
      ZRV_Table_modify("actes", "actes", text.c_str(), text.c_str());
    }
    void repair(const std::string &text) { ZRV_Table_repair("actes", "1", text.c_str()); }
    void setAndFlush(const std::string &text) {
      char out[8];
      ZRV_Libelle_NC_idem_0("?", 0, 0, "actes", out, sizeof out);
      test::setColumn(1, text.c_str());
      test::flushLine();
    }
  };
  struct OnModel {
    EditModel &model;
    void setLine(int line) { model.ZRV_Libelle_NC_set_ligne(line); }
    void replace(int column, const std::string &text) {
      model.ZRV_Libelle_NC_idem_replace(2, column, "actes", text.c_str());
    }
    void insert(int fields) { model.ZRV_Libelle_NC_idem_insert("actes", fields); }
    void remove() { model.ZRV_Libelle_NC_idem_delete("actes"); }
    void modify(const std::string &text) {
      model.ZRV_Table_modify("actes", "actes", text.c_str(), text.c_str());
    }
    void repair(const std::string &text) { model.ZRV_Table_repair("actes", "1", text.c_str()); }
    void setAndFlush(const std::string &text) {
      char out[8];
      model.ZRV_Libelle_NC_idem_0(0, 0, "actes", out, sizeof out);
      model.ZRV_Libelle_NC_set(2, 1, text.c_str());
      model.ZRV_Libelle_NC_idem_flush("actes");
    }
  };

  // The table after each number of edits.
  static std::vector<std::string> history(unsigned seed) {
    EditModel model;
    model.szDirTables = "Data:tables";
    model.directories["Data:tables"] = true;
    std::string &text = model.files["Data:tables:actes.tab"] = initial();
    std::vector<std::string> all = {text};
    for (int i = 0; i < kEdits; ++i) {
      edit(OnModel{model}, i, seed);
      all.push_back(model.files["Data:tables:actes.tab"]);
    }
    return all;
  }

  // Starts the edits, kills them after some microseconds, and returns how many were reported.
  int editsUntilKilled(unsigned seed, useconds_t delay) {
    int report[2];
    EXPECT_EQ(pipe(report), 0);
    const pid_t child = fork();
    if (child == 0) {
      for (int i = 0; i < kEdits; ++i) {
        edit(OnLibrary(), i, seed);
        if (write(report[1], "x", 1) != 1) _exit(1);
      }
      pause();
    }
    close(report[1]);
    usleep(delay);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    int count = 0;
    char reports[kEdits];
    for (ssize_t got; (got = read(report[0], reports, sizeof reports)) > 0;)
      count += static_cast<int>(got);
    close(report[0]);
    return count;
  }
};

TEST_F(KilledAnyTime, TheTableIsThatBeforeOrAfterTheEditThatWasGoingOn) {
  constexpr int kKills = 500;
  std::mt19937 random(5);
  int inTheMiddle = 0;
  for (unsigned group = 0; group < 10; ++group) {
    const std::vector<std::string> expected = history(group);
    for (int i = 0; i < kKills / 10; ++i) {
      reset();
      table("actes", initial());
      const int done = editsUntilKilled(group, static_cast<useconds_t>(random() % 12000));
      const std::string now = tableText();
      const bool isBefore = now == expected[static_cast<std::size_t>(done)];
      const bool isAfter = done < kEdits && now == expected[static_cast<std::size_t>(done) + 1];
      ASSERT_TRUE(isBefore || isAfter) << "group " << group << " after " << done;
      if (done > 0 && done < kEdits) ++inTheMiddle;
      const Files left = visible(files());
      ASSERT_EQ(left.size(), 3U) << "table, back-up and another table";
    }
  }
  EXPECT_GT(inTheMiddle, kKills / 2);
}

// --- Many at once ------------------------------------------------------------------------------

class AtOnce : public test::Edits {
 protected:
  static constexpr int kProcesses = 8;

  // Runs body(process) in that many processes at once; returns the number that returned 0.
  static int run(const std::function<int(int process)> &body) {
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
      const pid_t child = fork();
      if (child == 0) _exit(body(process));
      children.push_back(child);
    }
    int succeeded = 0;
    for (const pid_t child : children) {
      int status = 0;
      waitpid(child, &status, 0);
      if (WIFEXITED(status) && WEXITSTATUS(status) == 0) ++succeeded;
    }
    return succeeded;
  }
};

TEST_F(AtOnce, EightProcessesInsertTwoHundredLinesEach) {
  constexpr int kInserts = 200;
  EXPECT_EQ(run([](int process) {
              for (int i = 0; i < kInserts; ++i) {
                ZRV_Libelle_NC_set_ligne(3 + process % 4);
                if (insertLine(1 + process % 3) != 1) return 1;
              }
              return 0;
            }),
            kProcesses);
  const std::string now = tableText();
  const auto count = [&](std::string_view line) {
    int found = 0;
    for (std::size_t at = now.find(line); at != std::string::npos; at = now.find(line, at + 1))
      ++found;
    return found;
  };
  const std::string unknown =
      "N\xE9"
      "ant";
  EXPECT_EQ(count("\r\n" + unknown), kProcesses * kInserts);
  EXPECT_EQ(count("\r\n"), kProcesses * kInserts + 7);
  EXPECT_EQ(count("," + unknown), kInserts * (0 + 1 + 2 + 0 + 1 + 2 + 0 + 1));
  EXPECT_EQ(files().size(), 1U);
}

TEST_F(AtOnce, NoneLosesWhatAnotherWrites) {
  constexpr int kRounds = 100;
  std::string before = lines({"Compteurs", "Version: 1", "#DEBUT"});
  std::string after = before;
  for (int process = 0; process < kProcesses; ++process) {
    before += "0" + std::to_string(process) + ",0\r\n";
    after += "0" + std::to_string(process) + "," + std::to_string(kRounds) + "\r\n";
  }
  table("actes", before);
  EXPECT_EQ(run([](int process) {
              const std::string key = "0" + std::to_string(process);
              for (int i = 1; i <= kRounds; ++i) {
                const test::Answer answer = lookUp(key, 1, "actes");
                if (answer.result != 1 || answer.out != std::to_string(i - 1)) return 1;
                const std::string next = std::to_string(i);
                if (replaceColumn(1, next.c_str()) != 1) return 2;
              }
              return 0;
            }),
            kProcesses);
  EXPECT_EQ(files(), (Files{{"actes.tab", after}}));
}

TEST_F(AtOnce, ATableIsCreatedOnce) {
  for (int round = 0; round < 20; ++round) {
    unlink(posixPath("new").c_str());
    EXPECT_EQ(run([](int process) {
                const std::string title = "T" + std::to_string(process);
                if (ZRV_Table_create("new", "1", title.c_str()) != 1) return 1;
                ZRV_Libelle_NC_set_ligne(3);
                return insertLine(1, "new") == 1 ? 0 : 2;
              }),
              kProcesses);
    EXPECT_EQ(tableText("new").size(),
              lines({"T0", "Version: 1", "#DEBUT", "#FIN"}).size() + std::size_t{7} * kProcesses);
  }
}

// Each replaces the one before it: the last one is there, whole.
TEST_F(AtOnce, OneNewNameGoesToTheLastTable) {
  for (int process = 0; process < kProcesses; ++process)
    table("t" + std::to_string(process), "old " + std::to_string(process));
  EXPECT_EQ(run([](int process) {
              const std::string name = "t" + std::to_string(process);
              return 1 - ZRV_Table_modify(name.c_str(), "new", "1", name.c_str());
            }),
            kProcesses);
  EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "new.tab"}));
  EXPECT_EQ(tableText("new").substr(0, 1), "t");
  EXPECT_EQ(tableText("new").substr(2), "\r\n");
}

// Two tables that change their names with each other are one afterwards, and nobody waits for long.
TEST_F(AtOnce, RenamingsCrossEachOther) {
  for (int round = 0; round < 20; ++round) {
    table("a", lines({"a"}));
    table("b", lines({"b"}));
    EXPECT_GE(run([](int process) {
                const bool even = process % 2 == 0;
                const char *from = even ? "a" : "b";
                return 1 - ZRV_Table_modify(from, even ? "b" : "a", "1", from);
              }),
              1);
    EXPECT_EQ(files().size(), 2U) << "one of them, and the example table";
  }
}

// An edit of a table that another one replaces is made before or after it: the one that replaced
// it is not lost.
TEST_F(AtOnce, ATableThatReplacesAnEditedOneStays) {
  for (int round = 0; round < 50; ++round) {
    table("from", lines({"from", "v"}));
    table("to", lines({"to", "v"}));
    EXPECT_EQ(run([](int process) {
                ZRV_Libelle_NC_set_ligne(2);
                if (process == 0) return 1 - ZRV_Table_modify("from", "to", "1", "from");
                return 1 - replaceColumn(1, "x", "to");
              }),
              kProcesses);
    EXPECT_EQ(test::entries(folder()), (std::vector<std::string>{"actes.tab", "to.tab"}));
    EXPECT_EQ(tableText("to").substr(0, 6), "from\r\n");
  }
}

}  // namespace
}  // namespace korvel
