// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPixmap>
#include <QString>

/**
 * Gesture shapes. The values are stored in the user's gesture map, so they never
 * change; 0 is not used. The underlying type is fixed so that any stored value, even
 * one no build knows, can be held without undefined behaviour.
 *
 * @ingroup gestures
 */
enum EMouseGestureDirection : qint32 {
    MouseGestureLeft = 1,       ///< "L"
    MouseGestureRight = 2,      ///< "R"
    MouseGestureUp = 3,         ///< "U"
    MouseGestureDown = 4,       ///< "D"
    MouseGestureDownRight = 5,  ///< "DR"
    MouseGestureRightUp = 6,    ///< "RU"
    MouseGestureRightDown = 7,  ///< "RD"
    MouseGestureLeftUp = 8,     ///< "LU"
    MouseGestureUpLeft = 9,     ///< "UL"
    MouseGestureUpRight = 10,   ///< "UR"
    MouseGestureRightLeft = 11, ///< "RL"
};

/**
 * Browser actions a gesture can run. Stored in the user's gesture map, so the values
 * never change; 0 is not used. BrowserActionInvalid is a real, selectable action:
 * binding a shape to it switches that shape off.
 *
 * @ingroup gestures
 */
enum EBrowserAction : qint32 {
    BrowserActionInvalid = 1,
    BrowserActionBack = 2,
    BrowserActionForward = 3,
    BrowserActionPageUp = 4,
    BrowserActionPageDown = 5,
    BrowserActionCloseTab = 6,
    BrowserActionNewTab = 7,
    BrowserActionReload = 8,
    BrowserActionCloseAll = 9,
    BrowserActionPreviousTab = 10,
    BrowserActionNextTab = 11,
    BrowserActionRecoverClosedTab = 12,
};

/**
 * Process-wide gesture settings: the shapes and actions with their texts and images,
 * the factory binding of shapes to actions, the user's binding and two switches
 * (gestures on, gesture tip on).
 *
 * Everything persistent lives in VosSettingManager under the group "SYS_SETTING":
 * "SYS_SETTING_ENABLE_GESTURE" and "SYS_SETTING_GESTURE_TIP" ("1" on, "0" off, absent
 * on) and "SYS_SETTING_GESTURE_MAP" (Base64 of the map's image as Qt 5's QDataStream
 * writes it; the same bytes with Qt 6). The user's map is read from the store every
 * time it is asked for; only the two switches are held in memory.
 *
 * Instance() and ReleaseInstance() belong to the GUI thread like everything else:
 * called from another thread they print a warning and refuse (Instance() returns
 * null). ReleaseInstance() may be called from a destructor that it sets off.
 *
 * @ingroup gestures
 */
class KELTABCONTAINER_EXPORT KelMouseGesture : public QObject
{
    Q_OBJECT
public:
    /** The single instance, created on first use with both switches read from the store. */
    static KelMouseGesture *Instance();
    /**
     * Destroys the instance; connections to it go with it. The next Instance() makes a
     * fresh object that reads the switches again.
     */
    static void ReleaseInstance();

    /** @return every action, BrowserActionInvalid first, in ascending value order. */
    QList<EBrowserAction> GetAllBrowserAction() const;
    /** @return every shape in ascending value order. */
    QList<EMouseGestureDirection> GetAllGestureDirection() const;

    /**
     * @return the translated display text of @p action (translation context
     * "KelMouseGesture"); for a value that is no action, the text of "Invalid action".
     */
    QString GetBrowserActionText(EBrowserAction action) const;
    /**
     * @return the image of @p direction, loaded from ":/images/mousegesture/"; a null
     * pixmap for a value that is no shape.
     */
    QPixmap GetGestureDirectionPixmap(EMouseGestureDirection direction) const;

    /** @return the factory binding: every shape bound to the action one value higher. */
    QMap<EMouseGestureDirection, EBrowserAction> GetDefaultGestureMap() const;
    /**
     * @return the binding in force: the factory binding with every entry of the
     * stored map laid over it. Shapes the stored map lacks keep their factory action;
     * an absent, empty, undecodable or truncated stored map gives the factory binding.
     * Stored entries are taken as they are, unknown values included.
     */
    QMap<EMouseGestureDirection, EBrowserAction> GetGestureMap() const;
    /**
     * Stores @p map as the user's binding (only the entries given). Nothing is cached,
     * so GetGestureMap() sees it at once.
     * @note SigMouseGestureUpdate() is not emitted; the host emits it when it is done.
     */
    void SetGestureMap(const QMap<EMouseGestureDirection, EBrowserAction> &map);

    /** Reloads the gestures switch from the store. */
    void ReadEnableGesture();
    /** Reloads the gesture tip switch from the store. */
    void ReadEnableGestureTip();
    /** Sets the gestures switch and writes it to the store at once. */
    void SetEnableGesture(bool enable);
    /** Sets the gesture tip switch and writes it to the store at once. */
    void SetEnableGestureTip(bool enable);
    /** @return the gestures switch as held in memory (no store access). */
    bool GetEnableGesture() const;
    /** @return the gesture tip switch as held in memory (no store access). */
    bool GetEnableGestureTip() const;

Q_SIGNALS:
    /**
     * Gesture settings changed. @note Never emitted by the library: the host emits it
     * on the instance after changing settings, and listeners re-read what they keep.
     */
    void SigMouseGestureUpdate();

private:
    explicit KelMouseGesture(QObject *parent);
    ~KelMouseGesture() override;
    Q_DISABLE_COPY(KelMouseGesture)

    QMap<EMouseGestureDirection, QString> m_pixmapPaths;
    QMap<EBrowserAction, QString> m_actionTexts;
    QMap<EMouseGestureDirection, EBrowserAction> m_defaultGestureMap;
    bool m_enableGesture = true;
    bool m_enableGestureTip = true;
};
