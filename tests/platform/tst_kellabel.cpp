// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "kellabel.h"

class TstKelLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsPlainText_data();
    void showsPlainText();
    void keepsParent();
};

void TstKelLabel::showsPlainText_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("bold markup") << QStringLiteral("<b>Title</b>");
    QTest::newRow("link") << QStringLiteral("<a href=\"https://example.com\">x</a>");
    QTest::newRow("entity") << QStringLiteral("Tom &amp; Jerry");
}

void TstKelLabel::showsPlainText()
{
    QFETCH(QString, text);

    KelLabel label;
    QCOMPARE(label.textFormat(), Qt::PlainText);
    label.setText(text);
    QCOMPARE(label.text(), text);

    // Laid out as plain text: as wide as a plain-text label with the same text,
    // which differs from the width the same text gets as rich text.
    QLabel plain;
    plain.setTextFormat(Qt::PlainText);
    plain.setText(text);
    QLabel rich;
    rich.setTextFormat(Qt::RichText);
    rich.setText(text);
    QVERIFY(plain.sizeHint() != rich.sizeHint());
    QCOMPARE(label.sizeHint(), plain.sizeHint());
}

void TstKelLabel::keepsParent()
{
    QWidget parent;
    auto *label = new KelLabel(&parent);
    QCOMPARE(label->parentWidget(), &parent);
}

KELTAB_TEST_MAIN(TstKelLabel)
#include "tst_kellabel.moc"
