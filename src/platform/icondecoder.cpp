// SPDX-License-Identifier: MIT
#include "icondecoder_p.h"

#include <QBuffer>
#include <QImageReader>
#include <QXmlStreamReader>

namespace {

bool StartsWith(const QByteArray &bytes, const char *prefix, int length)
{
    return bytes.size() >= length && memcmp(bytes.constData(), prefix, size_t(length)) == 0;
}

// SVG is text: it may start with a byte-order mark, blanks, an XML declaration,
// comments or a document type before its root element, which the reader checks.
bool LooksLikeSvg(const QByteArray &bytes)
{
    int start = StartsWith(bytes, "\xEF\xBB\xBF", 3) ? 3 : 0;
    while (start < bytes.size() && (bytes.at(start) == ' ' || bytes.at(start) == '\t' || bytes.at(start) == '\r'
                                    || bytes.at(start) == '\n'))
        ++start;
    return start < bytes.size() && bytes.at(start) == '<';
}

bool IsLocalReference(const QString &value)
{
    return value.trimmed().startsWith(QLatin1Char('#'));
}

} // namespace

QByteArray IconDecoder::Format(const QByteArray &bytes)
{
    if (StartsWith(bytes, "\x89PNG\r\n\x1a\n", 8))
        return QByteArrayLiteral("png");
    if (StartsWith(bytes, "\xFF\xD8\xFF", 3))
        return QByteArrayLiteral("jpeg");
    if (StartsWith(bytes, "GIF87a", 6) || StartsWith(bytes, "GIF89a", 6))
        return QByteArrayLiteral("gif");
    if (StartsWith(bytes, "BM", 2))
        return QByteArrayLiteral("bmp");
    if (StartsWith(bytes, "\0\0\1\0", 4))
        return QByteArrayLiteral("ico");
    if (StartsWith(bytes, "RIFF", 4) && bytes.size() >= 12 && bytes.mid(8, 4) == "WEBP")
        return QByteArrayLiteral("webp");
    if (LooksLikeSvg(bytes) && IsSelfContainedSvg(bytes))
        return QByteArrayLiteral("svg");
    return QByteArray();
}

bool IconDecoder::IsSelfContainedSvg(const QByteArray &bytes)
{
    QXmlStreamReader xml(bytes);
    bool sawRoot = false;
    while (!xml.atEnd()) {
        switch (xml.readNext()) {
        case QXmlStreamReader::DTD:
            // A public document type names a file nobody fetches; declared entities
            // (internal ones can multiply text, external ones read files) are refused.
            if (!xml.entityDeclarations().isEmpty() || xml.text().contains(QLatin1String("<!ENTITY")))
                return false;
            break;
        case QXmlStreamReader::ProcessingInstruction:
            // <?xml-stylesheet href="..."?> and the like point outside the document.
            return false;
        case QXmlStreamReader::EntityReference:
            return false;
        case QXmlStreamReader::StartElement: {
            if (!sawRoot) {
                if (xml.name() != QLatin1String("svg"))
                    return false;
                sawRoot = true;
            }
            // <image href="file:...">, <use href="other.svg#x">, <a href>: only
            // references inside the document itself are left.
            const QXmlStreamAttributes attributes = xml.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                if (attribute.name() == QLatin1String("href") && !IsLocalReference(attribute.value().toString()))
                    return false;
            }
            // @import and url() in a style sheet may name files too.
            if (xml.name() == QLatin1String("style")) {
                const QString css = xml.readElementText(QXmlStreamReader::IncludeChildElements);
                if (css.contains(QLatin1String("@import"), Qt::CaseInsensitive))
                    return false;
            }
            break;
        }
        default:
            break;
        }
    }
    return sawRoot && !xml.hasError();
}

QImage IconDecoder::Decode(const QByteArray &bytes)
{
    const QByteArray format = Format(bytes);
    if (format.isEmpty())
        return QImage();
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, format);
    // Only the handler of the format the signature named; no other plugin gets to
    // look at the bytes.
    reader.setAutoDetectImageFormat(false);
    // The header first: a few bytes can announce a picture whose pixels would not
    // fit in memory.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || size.width() > MaxDimension || size.height() > MaxDimension)
        return QImage();
    const QImage image = reader.read();
    if (image.isNull() || image.width() > MaxDimension || image.height() > MaxDimension)
        return QImage();
    return image;
}
