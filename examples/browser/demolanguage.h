// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QTranslator>

/**
 * The browser's language: the library's catalogue first, then the demo's own, so that
 * the demo's wording wins where both translate a text; the application follows the
 * language's direction. A window shows the texts of the language loaded when it was
 * made.
 */
class DemoLanguage
{
public:
    DemoLanguage() = default;
    ~DemoLanguage();
    DemoLanguage(const DemoLanguage &) = delete;
    DemoLanguage &operator=(const DemoLanguage &) = delete;

    /** Loads @p locale's catalogues; @return false (texts stay English) when there are none. */
    bool Load(const QLocale &locale);
    /** Back to the English source texts, left to right. */
    void Unload();

private:
    QTranslator m_demo;
    bool m_loaded = false;
};
