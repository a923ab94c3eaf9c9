// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "elidedlabelex.h"

#include <QHBoxLayout>

namespace {

const QChar kEllipsis(0x2026);
const QString kLong = QStringLiteral("The quick brown fox jumps over the lazy dog and keeps running");

int Available(const ElidedLabelEx &label)
{
    return label.contentsRect().width() - 2 * label.margin();
}

// Checks what the label shows against its full text: the whole text when it fits,
// otherwise a prefix followed by an ellipsis, never wider than the room it has.
void VerifyShown(const ElidedLabelEx &label, const QString &full)
{
    const QString shown = label.text();
    const QFontMetrics metrics = label.fontMetrics();
    const int available = Available(label);
    QCOMPARE(label.FullText(), full);
    QVERIFY2(metrics.horizontalAdvance(shown) <= available,
             qPrintable(QStringLiteral("'%1' is wider than %2").arg(shown).arg(available)));
    if (metrics.horizontalAdvance(full) <= available) {
        QCOMPARE(shown, full);
        return;
    }
    QVERIFY2(shown.endsWith(kEllipsis), qPrintable(shown));
    QVERIFY2(full.startsWith(shown.chopped(1)), qPrintable(shown));
    // As much of the text as Qt's own eliding fits into the room the label has now
    // (not the room it had at some earlier size).
    QCOMPARE(shown, metrics.elidedText(full, Qt::ElideRight, available));
}

} // namespace

class TstElidedLabelEx : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isPlainOneLine();
    void elidesOnTheRightToItsWidth_data();
    void elidesOnTheRightToItsWidth();
    void marginsLeaveLessRoom();
    void toolTipIsTheOneGiven();
    void reElidesOnResize();
    void reElidesOnFontChange();
    void reElidesOnStyleSheetFont();
    void setFontFamilyKeepsPixelSize();
    void setFontPixelSize_data();
    void setFontPixelSize();
    void minimumSizeHintAllowsEliding();
    void layoutShrinksAndElides();
    void layoutGivesRoomBackAfterElision();
    void newTextUpdatesSizeHint();

private:
    ElidedLabelEx *AddLaidOutLabel(int width);

    QWidget *m_host = nullptr;
    ElidedLabelEx *m_label = nullptr;
};

void TstElidedLabelEx::init()
{
    m_host = new QWidget;
    m_host->resize(400, 60);
    m_label = new ElidedLabelEx(m_host);
    QFont font = m_label->font();
    font.setPixelSize(12);
    m_label->setFont(font);
    m_label->setGeometry(0, 0, 120, 20);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host));
}

void TstElidedLabelEx::cleanup()
{
    delete m_host;
    m_host = nullptr;
    m_label = nullptr;
}

void TstElidedLabelEx::isPlainOneLine()
{
    QCOMPARE(m_label->textFormat(), Qt::PlainText);
    QVERIFY(!m_label->wordWrap());
    m_label->setText(QStringLiteral("<b>x</b>"));
    QCOMPARE(m_label->text(), QStringLiteral("<b>x</b>"));
}

void TstElidedLabelEx::elidesOnTheRightToItsWidth_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("text");

    QTest::newRow("long text, narrow") << 60 << kLong;
    QTest::newRow("long text, medium") << 120 << kLong;
    QTest::newRow("long text, wide") << 390 << kLong;
    QTest::newRow("short text fits") << 120 << QStringLiteral("Home");
    QTest::newRow("empty text") << 120 << QString();
    QTest::newRow("one long word") << 50 << QStringLiteral("Supercalifragilisticexpialidocious");
    QTest::newRow("non-latin") << 40 << QStringLiteral("\u65b0\u5efa\u6807\u7b7e\u9875\u9762\u6d4f\u89c8");
}

void TstElidedLabelEx::elidesOnTheRightToItsWidth()
{
    QFETCH(int, width);
    QFETCH(QString, text);

    m_label->resize(width, 20);
    m_label->setText(text);
    VerifyShown(*m_label, text);
    QCOMPARE(m_label->FullText(), text);
}

void TstElidedLabelEx::marginsLeaveLessRoom()
{
    m_label->resize(120, 20);
    m_label->setText(kLong);
    const QString wide = m_label->text();

    m_label->setMargin(10);
    m_label->setContentsMargins(5, 0, 5, 0);
    m_label->setText(kLong);
    QCOMPARE(Available(*m_label), 120 - 10 - 20);
    VerifyShown(*m_label, kLong);
    QVERIFY(m_label->text().size() < wide.size());
}

void TstElidedLabelEx::toolTipIsTheOneGiven()
{
    m_label->resize(60, 20);
    m_label->setText(kLong, QStringLiteral("Full title"));
    QCOMPARE(m_label->toolTip(), QStringLiteral("Full title"));
    QVERIFY(m_label->text() != kLong);

    // No tool tip given: none shown, the elided text is never used as one.
    m_label->setText(kLong);
    QCOMPARE(m_label->toolTip(), QString());
}

void TstElidedLabelEx::reElidesOnResize()
{
    m_label->resize(60, 20);
    m_label->setText(kLong);
    VerifyShown(*m_label, kLong);
    const QString narrow = m_label->text();

    m_label->resize(390, 20);
    QCOMPARE(m_label->text(), kLong);

    m_label->resize(60, 20);
    QCOMPARE(m_label->text(), narrow);
}

void TstElidedLabelEx::reElidesOnFontChange()
{
    const QString text = QStringLiteral("Dashboard");
    m_label->resize(m_label->fontMetrics().horizontalAdvance(text) + 2, 20);
    m_label->setText(text);
    QCOMPARE(m_label->text(), text);

    QFont bigger = m_label->font();
    bigger.setPixelSize(24);
    m_label->setFont(bigger);
    VerifyShown(*m_label, text);
    QVERIFY(m_label->text().endsWith(kEllipsis));

    QFont smaller = m_label->font();
    smaller.setPixelSize(12);
    m_label->setFont(smaller);
    QCOMPARE(m_label->text(), text);
}

void TstElidedLabelEx::reElidesOnStyleSheetFont()
{
    const QString text = QStringLiteral("Dashboard");
    m_label->resize(m_label->fontMetrics().horizontalAdvance(text) + 2, 20);
    m_label->setText(text);
    QCOMPARE(m_label->text(), text);

    m_host->setStyleSheet(QStringLiteral("ElidedLabelEx { font-size: 30px; }"));
    QCOMPARE(m_label->font().pixelSize(), 30);
    VerifyShown(*m_label, text);
    QVERIFY(m_label->text().endsWith(kEllipsis));
}

void TstElidedLabelEx::setFontFamilyKeepsPixelSize()
{
    m_label->SetFontPixelSize(15);
    m_label->SetFontFamily(QStringLiteral("DejaVu Serif"));
    QCOMPARE(m_label->font().family(), QStringLiteral("DejaVu Serif"));
    QCOMPARE(m_label->font().pixelSize(), 15);

    // Narrow letters: many more fit in a proportional font than in a fixed-width one.
    const QString narrow(80, QLatin1Char('i'));
    m_label->resize(150, 20);
    m_label->setText(narrow);
    VerifyShown(*m_label, narrow);
    const QString serif = m_label->text();
    m_label->SetFontFamily(QStringLiteral("DejaVu Sans Mono"));
    QCOMPARE(m_label->font().family(), QStringLiteral("DejaVu Sans Mono"));
    VerifyShown(*m_label, narrow);
    QVERIFY(m_label->text().size() < serif.size());
}

void TstElidedLabelEx::setFontPixelSize_data()
{
    QTest::addColumn<int>("pixelSize");
    QTest::addColumn<int>("expected");

    QTest::newRow("larger") << 20 << 20;
    QTest::newRow("smaller") << 9 << 9;
    QTest::newRow("same") << 12 << 12;
    QTest::newRow("zero ignored") << 0 << 12;
    QTest::newRow("negative ignored") << -4 << 12;
}

void TstElidedLabelEx::setFontPixelSize()
{
    QFETCH(int, pixelSize);
    QFETCH(int, expected);

    const QString family = m_label->font().family();
    m_label->resize(120, 20);
    m_label->setText(kLong);
    m_label->SetFontPixelSize(pixelSize);
    QCOMPARE(m_label->font().pixelSize(), expected);
    QCOMPARE(m_label->font().family(), family);
    VerifyShown(*m_label, kLong);
}

ElidedLabelEx *TstElidedLabelEx::AddLaidOutLabel(int width)
{
    // A host may put the label in a layout next to a stretch.
    auto *box = new QWidget(m_host);
    auto *layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *label = new ElidedLabelEx;
    label->setFont(m_label->font());
    layout->addWidget(label);
    layout->addStretch();
    label->setText(kLong);
    box->setGeometry(0, 30, width, 20);
    box->show();
    return label;
}

void TstElidedLabelEx::minimumSizeHintAllowsEliding()
{
    // Were the minimum the whole text, a layout would hold a window that wide.
    m_label->setText(kLong);
    m_label->setMargin(3);
    QCOMPARE(m_label->minimumSizeHint().width(), 6);
    QCOMPARE(m_label->minimumSizeHint().height(), m_label->sizeHint().height());
}

void TstElidedLabelEx::layoutShrinksAndElides()
{
    ElidedLabelEx *label = AddLaidOutLabel(80);
    QTRY_COMPARE(label->width(), 80);
    VerifyShown(*label, kLong);
    QVERIFY(label->text().endsWith(kEllipsis));
}

void TstElidedLabelEx::layoutGivesRoomBackAfterElision()
{
    ElidedLabelEx *label = AddLaidOutLabel(80);
    QTRY_COMPARE(label->width(), 80);
    QVERIFY(label->text().endsWith(kEllipsis));

    // Given room again, it asks for its whole text, not for the elided one.
    const int full = label->fontMetrics().horizontalAdvance(kLong);
    QVERIFY(full < m_host->width());
    label->parentWidget()->resize(m_host->width(), 20);
    QTRY_VERIFY2(label->width() >= full, qPrintable(QString::number(label->width())));
    QCOMPARE(label->text(), kLong);
}

void TstElidedLabelEx::newTextUpdatesSizeHint()
{
    ElidedLabelEx *label = AddLaidOutLabel(m_host->width());
    QTRY_COMPARE(label->text(), kLong);
    const QString shorter = QStringLiteral("Home");
    label->setText(shorter);
    QCOMPARE(label->sizeHint().width(), label->fontMetrics().horizontalAdvance(shorter));
    QTRY_COMPARE(label->width(), label->fontMetrics().horizontalAdvance(shorter));
}

KELTAB_TEST_MAIN(TstElidedLabelEx)
#include "tst_elidedlabelex.moc"
