// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "uiutils.h"

#include <QWidget>

namespace {

const QColor kPlain(0, 0, 255);
const QColor kAlert(255, 0, 0);

QColor CentreColour(QWidget *widget)
{
    return widget->grab().toImage().pixelColor(widget->rect().center());
}

} // namespace

class TstUIUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nullWidgetIsIgnored();
    void objectNameChangeTakesEffect();
    void dynamicPropertyChangeTakesEffect();
    void ownStyleSheetIsReapplied();

private:
    QWidget *m_host = nullptr;
    QWidget *m_child = nullptr;
};

void TstUIUtils::init()
{
    m_host = new QWidget;
    m_host->setStyleSheet(QStringLiteral(
        "QWidget#Plain { background: rgb(0, 0, 255); }"
        "QWidget#Alert { background: rgb(255, 0, 0); }"
        "QWidget#Plain[state=\"alert\"] { background: rgb(255, 0, 0); }"));
    m_host->resize(60, 40);
    m_child = new QWidget(m_host);
    m_child->setObjectName(QStringLiteral("Plain"));
    m_child->setAttribute(Qt::WA_StyledBackground, true);
    m_child->setGeometry(10, 10, 20, 20);
    m_host->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_host));
    QCOMPARE(CentreColour(m_child), kPlain);
}

void TstUIUtils::cleanup()
{
    delete m_host;
    m_host = nullptr;
    m_child = nullptr;
}

void TstUIUtils::nullWidgetIsIgnored()
{
    UIUtils::UpdateStyle(nullptr);
    // Nothing else was touched by the call.
    QCOMPARE(CentreColour(m_child), kPlain);
}

void TstUIUtils::objectNameChangeTakesEffect()
{
    m_child->setObjectName(QStringLiteral("Alert"));
    // Qt does not re-match style rules by itself after a rename: that is what the helper is for.
    QCOMPARE(CentreColour(m_child), kPlain);

    UIUtils::UpdateStyle(m_child);
    QCOMPARE(CentreColour(m_child), kAlert);

    m_child->setObjectName(QStringLiteral("Plain"));
    UIUtils::UpdateStyle(m_child);
    QCOMPARE(CentreColour(m_child), kPlain);
}

void TstUIUtils::dynamicPropertyChangeTakesEffect()
{
    m_child->setProperty("state", QStringLiteral("alert"));
    QCOMPARE(CentreColour(m_child), kPlain);
    UIUtils::UpdateStyle(m_child);
    QCOMPARE(CentreColour(m_child), kAlert);
}

void TstUIUtils::ownStyleSheetIsReapplied()
{
    m_child->setObjectName(QString());
    m_child->setStyleSheet(QStringLiteral("QWidget#Own { background: rgb(255, 0, 0); }"));
    m_child->setObjectName(QStringLiteral("Own"));
    UIUtils::UpdateStyle(m_child);
    QCOMPARE(CentreColour(m_child), kAlert);
}

KELTAB_TEST_MAIN(TstUIUtils)
#include "tst_uiutils.moc"
