// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "gesturemapbytes.h"
#include "gesturemapcodec_p.h"

#include <QBuffer>
#include <QDataStream>
#include <QRandomGenerator>

using IntMap = QMap<int, int>;

namespace {

using GestureTest::Be32;
using GestureTest::Pair;

// The stored format, written out by hand: the count, then the pairs from the highest
// key down. It is what Qt 5's QDataStream writes for a QMap<int, int>.
QByteArray FormatImage(const QMap<int, int> &map)
{
    QByteArray bytes = Be32(quint32(map.size()));
    for (auto it = map.constEnd(); it != map.constBegin();) {
        --it;
        bytes += Pair(it.key(), it.value());
    }
    return bytes;
}

// What the QDataStream of the Qt we run on writes for the map: Qt 6 writes the pairs
// from the lowest key up, with the same count and the same pair layout.
QByteArray QtImage(const QMap<int, int> &map)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << map;
    return bytes;
}

QMap<int, int> QtRead(const QByteArray &image)
{
    QMap<int, int> map;
    QDataStream stream(image);
    stream >> map;
    return stream.status() == QDataStream::Ok ? map : QMap<int, int>{{-1, -1}};
}

// The factory map's stored text, as every earlier build wrote it.
const char kFactoryText[] = "AAAACwAAAAsAAAAMAAAACgAAAAsAAAAJAAAACgAAAAgAAAAJAAAABwAAAAgAAAAGAAAABwAAAAUAAAAG"
                            "AAAABAAAAAUAAAADAAAABAAAAAIAAAADAAAAAQAAAAI=";

QMap<int, int> FactoryMap()
{
    QMap<int, int> map;
    for (int shape = 1; shape <= 11; ++shape)
        map.insert(shape, shape + 1);
    return map;
}

} // namespace

class TstGestureMapCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void factoryImageByteForByte()
    {
        const QByteArray image = GestureMapCodec::Encode(FactoryMap());
        QCOMPARE(image.size(), 92);
        QByteArray expected = Be32(11);
        for (int shape = 11; shape >= 1; --shape)
            expected += Pair(shape, shape + 1);
        QCOMPARE(image, expected);
        QCOMPARE(image.left(12), QByteArray::fromHex("0000000b" "0000000b" "0000000c"));
        QCOMPARE(image.right(8), QByteArray::fromHex("00000001" "00000002"));
        QCOMPARE(image, FormatImage(FactoryMap()));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        QCOMPARE(image, QtImage(FactoryMap()));
#endif
        QCOMPARE(QtRead(image), FactoryMap());
    }

    void imageIsTheSameOnEveryQt_data()
    {
        QTest::addColumn<QMap<int, int>>("map");
        QTest::newRow("empty") << QMap<int, int>();
        QTest::newRow("one entry") << QMap<int, int>{{1, 7}};
        QTest::newRow("factory") << FactoryMap();
        QTest::newRow("negative and extreme")
            << QMap<int, int>{{-1, -5}, {0, 0}, {INT_MAX, INT_MIN}, {INT_MIN, INT_MAX}};
        QMap<int, int> random;
        QRandomGenerator generator(20240601);
        for (int i = 0; i < 500; ++i)
            random.insert(int(generator.generate()), int(generator.generate()));
        QTest::newRow("500 random entries") << random;
    }

    void imageIsTheSameOnEveryQt()
    {
        QFETCH(IntMap, map);
        const QByteArray image = GestureMapCodec::Encode(map);
        QCOMPARE(image, FormatImage(map));
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        QCOMPARE(image, QtImage(map));
#endif
        QCOMPARE(image.size(), 4 + 8 * map.size());
        // Qt's own streaming reads the image, and the codec reads what Qt writes,
        // whichever order this Qt writes the pairs in.
        QCOMPARE(QtRead(image), map);
        QCOMPARE(GestureMapCodec::Decode(QtImage(map)), map);
        QCOMPARE(GestureMapCodec::Decode(image), map);
        QCOMPARE(GestureMapCodec::DecodeText(GestureMapCodec::EncodeText(map)), map);
    }

    void textIsStandardBase64()
    {
        const QString text = GestureMapCodec::EncodeText(QMap<int, int>{{1, 7}});
        QCOMPARE(text, QStringLiteral("AAAAAQAAAAEAAAAH"));
        // 92 bytes need padding: the standard alphabet with "=".
        const QString factory = GestureMapCodec::EncodeText(FactoryMap());
        QVERIFY(factory.endsWith(QLatin1Char('=')));
        QCOMPARE(factory, QString::fromLatin1(kFactoryText));
        QCOMPARE(GestureMapCodec::DecodeText(QString::fromLatin1(kFactoryText)), FactoryMap());
    }

    void malformedImages_data()
    {
        QTest::addColumn<QByteArray>("image");
        QTest::addColumn<QMap<int, int>>("expected");
        const QByteArray factory = FormatImage(FactoryMap());
        QTest::newRow("empty") << QByteArray() << QMap<int, int>();
        QTest::newRow("shorter than a count") << QByteArray::fromHex("000000") << QMap<int, int>();
        QTest::newRow("count only, zero") << Be32(0) << QMap<int, int>();
        QTest::newRow("count 3, one pair") << QByteArray(Be32(3) + Pair(1, 7)) << QMap<int, int>();
        QTest::newRow("factory less one byte") << factory.left(91) << QMap<int, int>();
        QTest::newRow("factory less one pair") << factory.left(84) << QMap<int, int>();
        QTest::newRow("half a pair") << QByteArray(Be32(1) + Be32(5)) << QMap<int, int>();
        QTest::newRow("huge count") << QByteArray(Be32(0xFFFFFFFFu) + Pair(1, 7) + Pair(2, 8)) << QMap<int, int>();
        QTest::newRow("count of INT_MAX + 1") << QByteArray(Be32(0x80000000u) + Pair(1, 7)) << QMap<int, int>();
        QTest::newRow("negative values") << QByteArray(Be32(2) + Pair(-1, -5) + Pair(3, -7))
                                         << QMap<int, int>{{-1, -5}, {3, -7}};
        QTest::newRow("trailing bytes ignored") << QByteArray(Be32(1) + Pair(4, 9) + QByteArray("junk"))
                                                << QMap<int, int>{{4, 9}};
        QTest::newRow("repeated key: last read wins") << QByteArray(Be32(2) + Pair(4, 9) + Pair(4, 10))
                                                      << QMap<int, int>{{4, 10}};
    }

    void malformedImages()
    {
        QFETCH(QByteArray, image);
        QFETCH(IntMap, expected);
        QCOMPARE(GestureMapCodec::Decode(image), expected);
    }

    void repeatedKeyAgreesWithQDataStream()
    {
        // QDataStream reads a repeated key into a multi-map, where value() is the
        // entry read last: the codec keeps exactly that one.
        const QByteArray image = Be32(3) + Pair(4, 9) + Pair(4, 10) + Pair(2, 1);
        QMap<int, int> qtMap;
        QDataStream stream(image);
        stream >> qtMap;
        QCOMPARE(stream.status(), QDataStream::Ok);
        const QMap<int, int> decoded = GestureMapCodec::Decode(image);
        QCOMPARE(decoded.value(4), qtMap.value(4));
        QCOMPARE(decoded.value(2), qtMap.value(2));
        QCOMPARE(decoded.size(), 2);
    }

    void malformedText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QMap<int, int>>("expected");
        QTest::newRow("empty") << QString() << QMap<int, int>();
        QTest::newRow("no Base64 at all") << QStringLiteral("!!!@@@###***") << QMap<int, int>();
        QTest::newRow("Unicode") << QStringLiteral("\u624b\u52bf\U0001F600") << QMap<int, int>();
        // Characters outside the alphabet are skipped, so a valid image with noise
        // in between still reads.
        QTest::newRow("noise inside valid text") << QStringLiteral("AAAA AQ*AA\nAAEA!AAAH") << QMap<int, int>{{1, 7}};
        QString unpadded = GestureMapCodec::EncodeText(FactoryMap());
        while (unpadded.endsWith(QLatin1Char('=')))
            unpadded.chop(1);
        QTest::newRow("missing padding") << unpadded << FactoryMap();
        QTest::newRow("truncated text") << QStringLiteral("AAAAAQAAAAEAAA") << QMap<int, int>();
    }

    void malformedText()
    {
        QFETCH(QString, text);
        QFETCH(IntMap, expected);
        QCOMPARE(GestureMapCodec::DecodeText(text), expected);
    }

    void randomBytesNeverBreakTheInvariants()
    {
        QRandomGenerator generator(7);
        for (int round = 0; round < 2000; ++round) {
            QByteArray bytes(int(generator.bounded(64)), '\0');
            for (char &c : bytes)
                c = char(generator.bounded(256));
            // Small counts now and then, so that some inputs decode.
            if (bytes.size() >= 4 && round % 2 == 0)
                bytes.replace(0, 4, Be32(generator.bounded(8)));
            const QMap<int, int> map = GestureMapCodec::Decode(bytes);
            QVERIFY(4 + 8 * map.size() <= qMax(bytes.size(), 4));
            QCOMPARE(GestureMapCodec::Decode(GestureMapCodec::Encode(map)), map);
            const QMap<int, int> fromText = GestureMapCodec::DecodeText(QString::fromLatin1(bytes));
            QCOMPARE(GestureMapCodec::Decode(GestureMapCodec::Encode(fromText)), fromText);
        }
    }
};

KELTAB_TEST_MAIN(TstGestureMapCodec)
#include "tst_gesturemapcodec.moc"
