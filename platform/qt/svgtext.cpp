// SPDX-License-Identifier: MIT
// Copies an SVG without its links, as the toolkit would follow them to any file.
#include "platform/qt/svgtext.h"

#include <QBuffer>
#include <QImageReader>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "platform/qt/picture.h"

namespace korvel::platform::qt {
namespace {

bool isLink(QStringView name) { return name == u"href" || name.endsWith(u":href"); }

// A picture that holds no links of its own.
bool isPlainPicture(QStringView link) {
  constexpr QStringView kEncoding = u"base64,";
  const qsizetype at = link.lastIndexOf(kEncoding);
  if (!link.startsWith(u"data:") || at < 0) return false;
  QByteArray content = QByteArray::fromBase64(link.mid(at + kEncoding.size()).toLatin1());
  QBuffer buffer(&content);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  return !reader.format().startsWith("svg") && !isTooLarge(reader.size());
}

bool leadsOutside(const QXmlStreamAttribute &attribute) {
  return isLink(attribute.qualifiedName()) && !attribute.value().startsWith(u'#') &&
         !isPlainPicture(attribute.value());
}

void writeStart(QXmlStreamWriter &writer, const QXmlStreamReader &reader) {
  writer.writeStartElement(reader.qualifiedName().toString());
  for (const QXmlStreamAttribute &each : reader.attributes())
    if (!leadsOutside(each))
      writer.writeAttribute(each.qualifiedName().toString(), each.value().toString());
}

}  // namespace

// The reader has expanded the entities of a document type. Processing instructions are left out, as
// one may name a style sheet.
QByteArray withoutLinks(const QByteArray &svg) {
  QXmlStreamReader reader(svg);
  reader.setNamespaceProcessing(false);
  QByteArray text;
  QXmlStreamWriter writer(&text);
  writer.writeStartDocument();
  while (!reader.atEnd()) {
    switch (reader.readNext()) {
      case QXmlStreamReader::StartElement:
        writeStart(writer, reader);
        break;
      case QXmlStreamReader::EndElement:
        writer.writeEndElement();
        break;
      case QXmlStreamReader::Characters:
        writer.writeCharacters(reader.text().toString());
        break;
      default:
        break;
    }
  }
  return reader.hasError() ? QByteArray() : text;
}

}  // namespace korvel::platform::qt
