// SPDX-License-Identifier: MIT
#include "kelmousegesture.h"

#include "guisingleton_p.h"

#include "gesturemapcodec_p.h"
#include "vossettingmanager.h"


namespace {

GuiSingleton<KelMouseGesture> g_instance;

const QString kGroup = QStringLiteral("SYS_SETTING");
const QString kEnableGestureKey = QStringLiteral("SYS_SETTING_ENABLE_GESTURE");
const QString kGestureTipKey = QStringLiteral("SYS_SETTING_GESTURE_TIP");
const QString kGestureMapKey = QStringLiteral("SYS_SETTING_GESTURE_MAP");

constexpr int kFirstDirection = MouseGestureLeft;
constexpr int kLastDirection = MouseGestureRightLeft;
constexpr int kFirstAction = BrowserActionInvalid;
constexpr int kLastAction = BrowserActionRecoverClosedTab;

// Absent means on, so that a fresh profile has gestures; anything but an exact "1"
// is off, so that a damaged value cannot switch gestures on by accident.
bool ReadSwitch(const QString &key)
{
    const QString value = VosSettingManager::Instance()->GetSystemValue(kGroup, key);
    return value.isEmpty() || value == QLatin1String("1");
}

void WriteSwitch(const QString &key, bool on)
{
    VosSettingManager::Instance()->SetSystemValueSync(kGroup, key,
                                                      on ? QStringLiteral("1") : QStringLiteral("0"));
}

} // namespace

KelMouseGesture::KelMouseGesture(QObject *parent)
    : QObject(parent)
{
    m_pixmapPaths.insert(MouseGestureLeft, QStringLiteral(":/images/mousegesture/left.png"));
    m_pixmapPaths.insert(MouseGestureRight, QStringLiteral(":/images/mousegesture/right.png"));
    m_pixmapPaths.insert(MouseGestureUp, QStringLiteral(":/images/mousegesture/up.png"));
    m_pixmapPaths.insert(MouseGestureDown, QStringLiteral(":/images/mousegesture/down.png"));
    m_pixmapPaths.insert(MouseGestureDownRight, QStringLiteral(":/images/mousegesture/downright.png"));
    m_pixmapPaths.insert(MouseGestureRightUp, QStringLiteral(":/images/mousegesture/rightup.png"));
    m_pixmapPaths.insert(MouseGestureRightDown, QStringLiteral(":/images/mousegesture/rightdown.png"));
    m_pixmapPaths.insert(MouseGestureLeftUp, QStringLiteral(":/images/mousegesture/leftup.png"));
    m_pixmapPaths.insert(MouseGestureUpLeft, QStringLiteral(":/images/mousegesture/upleft.png"));
    m_pixmapPaths.insert(MouseGestureUpRight, QStringLiteral(":/images/mousegesture/upright.png"));
    m_pixmapPaths.insert(MouseGestureRightLeft, QStringLiteral(":/images/mousegesture/rightleft.png"));

    // Translated once: the host installs its translators before it first asks for
    // gesture settings.
    m_actionTexts.insert(BrowserActionInvalid, tr("Invalid action"));
    m_actionTexts.insert(BrowserActionBack, tr("Back"));
    m_actionTexts.insert(BrowserActionForward, tr("Forward"));
    m_actionTexts.insert(BrowserActionPageUp, tr("PageUp"));
    m_actionTexts.insert(BrowserActionPageDown, tr("PageDown"));
    m_actionTexts.insert(BrowserActionCloseTab, tr("Close tab"));
    m_actionTexts.insert(BrowserActionNewTab, tr("New tab"));
    m_actionTexts.insert(BrowserActionReload, tr("Reload"));
    m_actionTexts.insert(BrowserActionCloseAll, tr("Close all"));
    m_actionTexts.insert(BrowserActionPreviousTab, tr("Previous tab"));
    m_actionTexts.insert(BrowserActionNextTab, tr("Next tab"));
    m_actionTexts.insert(BrowserActionRecoverClosedTab, tr("Recover recently closed tab"));

    for (int shape = kFirstDirection; shape <= kLastDirection; ++shape)
        m_defaultGestureMap.insert(EMouseGestureDirection(shape), EBrowserAction(shape + 1));

    ReadEnableGesture();
    ReadEnableGestureTip();
}

KelMouseGesture::~KelMouseGesture() = default;

KelMouseGesture *KelMouseGesture::Instance()
{
    return g_instance.Instance("KelMouseGesture", [] { return new KelMouseGesture(nullptr); });
}

void KelMouseGesture::ReleaseInstance()
{
    g_instance.Release("KelMouseGesture", [](KelMouseGesture *instance) { delete instance; });
}

QList<EBrowserAction> KelMouseGesture::GetAllBrowserAction() const
{
    QList<EBrowserAction> actions;
    for (int action = kFirstAction; action <= kLastAction; ++action)
        actions.append(EBrowserAction(action));
    return actions;
}

QList<EMouseGestureDirection> KelMouseGesture::GetAllGestureDirection() const
{
    QList<EMouseGestureDirection> directions;
    for (int shape = kFirstDirection; shape <= kLastDirection; ++shape)
        directions.append(EMouseGestureDirection(shape));
    return directions;
}

QString KelMouseGesture::GetBrowserActionText(EBrowserAction action) const
{
    const auto it = m_actionTexts.constFind(action);
    if (it != m_actionTexts.constEnd())
        return it.value();
    return tr("Invalid action");
}

QPixmap KelMouseGesture::GetGestureDirectionPixmap(EMouseGestureDirection direction) const
{
    const auto it = m_pixmapPaths.constFind(direction);
    if (it == m_pixmapPaths.constEnd())
        return QPixmap();
    return QPixmap(it.value());
}

QMap<EMouseGestureDirection, EBrowserAction> KelMouseGesture::GetDefaultGestureMap() const
{
    return m_defaultGestureMap;
}

QMap<EMouseGestureDirection, EBrowserAction> KelMouseGesture::GetGestureMap() const
{
    QMap<EMouseGestureDirection, EBrowserAction> result = m_defaultGestureMap;
    const QString text = VosSettingManager::Instance()->GetSystemValue(kGroup, kGestureMapKey);
    if (text.isEmpty())
        return result;
    const QMap<int, int> stored = GestureMapCodec::DecodeText(text);
    for (auto it = stored.constBegin(); it != stored.constEnd(); ++it)
        result[EMouseGestureDirection(it.key())] = EBrowserAction(it.value());
    return result;
}

void KelMouseGesture::SetGestureMap(const QMap<EMouseGestureDirection, EBrowserAction> &map)
{
    QMap<int, int> image;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it)
        image.insert(it.key(), it.value());
    VosSettingManager::Instance()->SetSystemValueSync(kGroup, kGestureMapKey, GestureMapCodec::EncodeText(image));
}

void KelMouseGesture::ReadEnableGesture()
{
    m_enableGesture = ReadSwitch(kEnableGestureKey);
}

void KelMouseGesture::ReadEnableGestureTip()
{
    m_enableGestureTip = ReadSwitch(kGestureTipKey);
}

void KelMouseGesture::SetEnableGesture(bool enable)
{
    m_enableGesture = enable;
    WriteSwitch(kEnableGestureKey, enable);
}

void KelMouseGesture::SetEnableGestureTip(bool enable)
{
    m_enableGestureTip = enable;
    WriteSwitch(kGestureTipKey, enable);
}

bool KelMouseGesture::GetEnableGesture() const
{
    return m_enableGesture;
}

bool KelMouseGesture::GetEnableGestureTip() const
{
    return m_enableGestureTip;
}
