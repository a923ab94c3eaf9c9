// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/keltabcontainer_export.h>

#include <QLocale>
#include <QStringList>

/**
 * @brief Loads the library's own catalogue of translated texts.
 *
 * The library's menus, tool tips, gesture names and accessible names are English
 * source texts passed through tr(). The library ships catalogues for German ("de"),
 * Simplified Chinese ("zh_CN") and Hebrew ("he"), compiled into it; Install() puts
 * the one for a locale into the application.
 *
 * Call it once the QApplication exists, from the GUI thread, and before installing
 * the host's own translators: Qt asks the most recently installed translator first,
 * so a host that translates one of our texts in its own catalogue keeps its wording.
 * A second call switches the language in place (widgets receive
 * QEvent::LanguageChange) without moving our catalogue ahead of the host's.
 *
 * The name of an untitled tab (TabData::GetNewTabName()) is read once per process:
 * install the catalogue before the first tab is made.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelTabTranslations
{
public:
    /**
     * Loads the catalogue that best matches @p locale (its UI languages in order, then
     * the language alone). Returns true when the library speaks that language: a
     * catalogue was loaded, or the locale is English, whose texts need none. Otherwise
     * returns false and the texts stay English. Without an application, or off the GUI
     * thread, it warns and returns false.
     */
    static bool Install(const QLocale &locale = QLocale());
    /** Takes the library's catalogue out again; the texts go back to English. */
    static void Remove();
    /** The languages the library ships catalogues for, as locale names ("de", "he", "zh_CN"). */
    static QStringList AvailableLanguages();
};
