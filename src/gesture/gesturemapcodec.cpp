#include "gesturemapcodec_p.h"

#include <QBuffer>
#include <QDataStream>

QByteArray GestureMapCodec::Encode(const QMap<int, int> &map)
{
    QByteArray image;
    QBuffer buffer(&image);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    // Qt's own container streaming is the definition of the format, so the image
    // stays what every earlier build wrote and read.
    stream << map;
    return image;
}

QMap<int, int> GestureMapCodec::Decode(const QByteArray &image)
{
    QMap<int, int> map;
    if (image.isEmpty())
        return map;
    QByteArray bytes = image;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QDataStream stream(&buffer);

    quint32 count = 0;
    stream >> count;
    // The count is untrusted: the loop ends as soon as the bytes do, so a huge count
    // costs no more than the bytes that are really there.
    for (quint32 i = 0; i < count; ++i) {
        qint32 key = 0;
        qint32 value = 0;
        stream >> key >> value;
        if (stream.status() != QDataStream::Ok)
            return QMap<int, int>();
        map.insert(key, value);
    }
    if (stream.status() != QDataStream::Ok)
        return QMap<int, int>();
    return map;
}

QString GestureMapCodec::EncodeText(const QMap<int, int> &map)
{
    return QString::fromLatin1(Encode(map).toBase64());
}

QMap<int, int> GestureMapCodec::DecodeText(const QString &text)
{
    return Decode(QByteArray::fromBase64(text.toUtf8()));
}
