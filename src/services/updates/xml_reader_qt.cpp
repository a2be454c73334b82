#include <QByteArray>
#include <QXmlStreamReader>
#include <vector>

#include "services/updates/xml_reader.h"

namespace vantle {
namespace {

constexpr std::size_t kMaximumDepth = 256;

std::string utf8(QStringView text) {
    return text.toString().toStdString();
}

}  // namespace

std::optional<XmlElement> parseXml(std::string_view document) {
    // The toolkit's reader checks well-formedness, namespaces and the declared encoding; it
    // resolves the predefined entities and character references and never loads anything from
    // outside the document.
    const QByteArray bytes = QByteArray::fromRawData(document.data(), static_cast<qsizetype>(document.size()));
    QXmlStreamReader reader(bytes);
    std::vector<XmlElement> open;
    std::optional<XmlElement> root;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            // A feed needs no document type, and one could declare entities that expand into far
            // more text than the document holds.
            return std::nullopt;
        case QXmlStreamReader::EntityReference:
            // An entity the document never declared, which the reader leaves unresolved.
            return std::nullopt;
        case QXmlStreamReader::StartElement: {
            if (open.size() >= kMaximumDepth) {
                return std::nullopt;
            }
            XmlElement element;
            element.name = utf8(reader.qualifiedName());
            for (const QXmlStreamAttribute& attribute : reader.attributes()) {
                element.attributes.emplace_back(utf8(attribute.qualifiedName()), utf8(attribute.value()));
            }
            open.push_back(std::move(element));
            break;
        }
        case QXmlStreamReader::EndElement: {
            XmlElement finished = std::move(open.back());
            open.pop_back();
            if (open.empty()) {
                root = std::move(finished);
            } else {
                open.back().children.push_back(std::move(finished));
            }
            break;
        }
        case QXmlStreamReader::Characters:
            if (!open.empty()) {
                open.back().text += utf8(reader.text());
            }
            break;
        default:
            break;
        }
    }
    if (reader.hasError() || !root) {
        return std::nullopt;
    }
    return root;
}

}  // namespace vantle
