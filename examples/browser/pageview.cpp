// SPDX-License-Identifier: MIT
#include "pageview.h"

#include <QFileInfo>
#include <QUrl>

PageView::PageView(QWidget *parent)
    : QTextBrowser(parent)
{
    setObjectName(QStringLiteral("PageView"));
    setFrameShape(QFrame::NoFrame);
    // Links are the page's to follow: it keeps its own history across local and
    // network pages.
    setOpenLinks(false);
    setOpenExternalLinks(false);
}

PageView::~PageView() = default;

void PageView::SetRemoteHtml(const QString &html)
{
    m_remote = true;
    setHtml(html);
}

void PageView::SetRemoteText(const QString &text)
{
    m_remote = true;
    setPlainText(text);
}

void PageView::SetLocalSource(const QUrl &url)
{
    m_remote = false;
    setSource(url);
}

QVariant PageView::loadResource(int type, const QUrl &name)
{
    if (m_remote)
        return QVariant();
    const QUrl resolved = name.isRelative() ? source().resolved(name) : name;
    // Asking QTextBrowser for a missing file would print a warning for every image a
    // page names but the demo does not ship.
    bool exists = false;
    if (resolved.scheme() == QLatin1String("qrc"))
        exists = QFileInfo::exists(QLatin1Char(':') + resolved.path());
    else if (resolved.isLocalFile())
        exists = QFileInfo::exists(resolved.toLocalFile());
    return exists ? QTextBrowser::loadResource(type, resolved) : QVariant();
}
