// SPDX-License-Identifier: MIT
#include "gesturemapcodec_p.h"

#include <QBuffer>
#include <QDataStream>

namespace {

// The image predates Qt 6 and must not change with it: Qt 6's QDataStream writes a
// QMap from the lowest key up (Qt 5 wrote from the highest down) and has a newer
// default version. Both are fixed here, so every build writes and reads the same
// bytes, whichever Qt it runs on.
void Prepare(QDataStream &stream)
{
    stream.setVersion(QDataStream::Qt_5_15);
    stream.setByteOrder(QDataStream::BigEndian);
}

} // namespace

QByteArray GestureMapCodec::Encode(const QMap<int, int> &map)
{
    QByteArray image;
    QBuffer buffer(&image);
    buffer.open(QIODevice::WriteOnly);
    QDataStream stream(&buffer);
    Prepare(stream);
    stream << quint32(map.size());
    for (auto it = map.constEnd(); it != map.constBegin();) {
        --it;
        stream << qint32(it.key()) << qint32(it.value());
    }
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
    Prepare(stream);

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
