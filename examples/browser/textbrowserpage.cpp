// SPDX-License-Identifier: MIT
#include "textbrowserpage.h"

#include "pageview.h"
#include "tabrecordfactory.h"

#include <KelTabContainer/browsermainnotify.h>

#include <QCoreApplication>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QScrollBar>
#include <QTimer>
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringDecoder>
#else
#include <QTextCodec>
#endif

namespace {

// A page larger than this is cut: the demo shows text, not archives.
constexpr qint64 kMaxPageBytes = 4 * 1024 * 1024;
constexpr int kTransferTimeoutMs = 20000;
constexpr int kZoomStepPoints = 1;
constexpr int kMinZoomSteps = -5;
constexpr int kMaxZoomSteps = 10;

// The titles of the demo's own pages: their tabs are named in the user's language.
[[maybe_unused]] const char *const kLocalPageTitles[] = {
    QT_TRANSLATE_NOOP("TextBrowserPage", "Welcome"),
    QT_TRANSLATE_NOOP("TextBrowserPage", "A host's guide"),
    QT_TRANSLATE_NOOP("TextBrowserPage", "Signals a host answers"),
    QT_TRANSLATE_NOOP("TextBrowserPage", "New tab"),
};

QString LocalPageTitle(const QString &title)
{
    const QByteArray source = title.toUtf8();
    return QCoreApplication::translate("TextBrowserPage", source.constData());
}

bool IsTextType(const QString &contentType)
{
    return contentType.startsWith(QLatin1String("text/")) || contentType.contains(QLatin1String("json"))
        || contentType.contains(QLatin1String("xml")) || contentType.contains(QLatin1String("javascript"));
}

// In the charset the page names (byte-order mark or <meta charset>), UTF-8 when it
// names none. Qt 6 alone decodes the Unicode encodings and Latin-1 only, so there a
// page in another charset is read as UTF-8.
QString DecodeHtml(const QByteArray &body)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QStringDecoder decoder = QStringDecoder::decoderForHtml(body);
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringDecoder::Utf8);
    return decoder.decode(body);
#else
    return QTextCodec::codecForHtml(body, QTextCodec::codecForName("UTF-8"))->toUnicode(body);
#endif
}

} // namespace

TextBrowserPage::TextBrowserPage(TabDataPtr tab, QNetworkAccessManager *network)
    : m_view(new PageView)
    , m_localTimer(new QTimer(m_view))
    , m_network(network)
{
    SetTabData(tab);
    m_localTimer->setSingleShot(true);
    QObject::connect(m_localTimer, &QTimer::timeout, m_view, [this] {
        m_view->SetLocalSource(QUrl(m_pendingUrl));
        const QString title = LocalPageTitle(m_view->documentTitle());
        const bool newTabPage = m_pendingUrl == TabRecordFactory::NewTabPageUrl();
        Finish(title.isEmpty() ? TabRecordFactory::PlaceholderTitle(m_pendingUrl) : title,
               newTabPage ? QString() : TabRecordFactory::IconForUrl(m_pendingUrl));
    });
    QObject::connect(m_view, &QTextBrowser::anchorClicked, m_view, [this](const QUrl &link) {
        const QUrl target = QUrl(CurrentUrl()).resolved(link);
        if (link.toString().startsWith(QLatin1Char('#')))
            m_view->scrollToAnchor(link.fragment());
        else
            OpenUrl(target.toString());
    });
}

TextBrowserPage::~TextBrowserPage()
{
    AbortLoading();
    delete m_view.data();
}

int TextBrowserPage::LocalLoadMs()
{
    return 250;
}

QWidget *TextBrowserPage::GetWidget()
{
    return m_view;
}

void TextBrowserPage::OnActivated()
{
    // The window shows the current tab's address and navigation state; tell it ours.
    AnnounceState();
    AnnounceZoom();
}

void TextBrowserPage::OnDeactivated()
{
}

void TextBrowserPage::OpenUrl(const QString &url)
{
    if (!url.isEmpty())
        Navigate(url, true, false);
}

void TextBrowserPage::ReloadUrl(const QString &url)
{
    if (!url.isEmpty())
        Navigate(url, false, true);
}

void TextBrowserPage::Reload(TabDataPtr data)
{
    SetTabData(data);
    ActionRefresh();
}

QString TextBrowserPage::GetOpenUrl()
{
    const TabDataPtr tab = GetTabData();
    return tab ? tab->GetUrl() : QString();
}

QString TextBrowserPage::GetPageName()
{
    return QStringLiteral("textbrowser");
}

void TextBrowserPage::ActionForward()
{
    if (!GetForwardEnabled())
        return;
    ++m_historyIndex;
    Navigate(m_history.at(m_historyIndex), false, false);
}

void TextBrowserPage::ActionBack()
{
    if (!GetBackEnabled())
        return;
    --m_historyIndex;
    Navigate(m_history.at(m_historyIndex), false, false);
}

void TextBrowserPage::ActionRefresh()
{
    Navigate(CurrentUrl(), false, false);
}

void TextBrowserPage::ActionRefreshNoCache()
{
    Navigate(CurrentUrl(), false, true);
}

void TextBrowserPage::ActionStop()
{
    if (!m_loading)
        return;
    AbortLoading();
    Q_EMIT BrowserMainNotify::Instance()->SigLoadFinished(GetTabData());
    AnnounceState();
}

bool TextBrowserPage::GetRefreshEnabled()
{
    return !CurrentUrl().isEmpty();
}

bool TextBrowserPage::GetForwardEnabled()
{
    return m_historyIndex + 1 < m_history.size();
}

bool TextBrowserPage::GetBackEnabled()
{
    return m_historyIndex > 0;
}

bool TextBrowserPage::GetIsLoading()
{
    return m_loading;
}

void TextBrowserPage::ZoomOut()
{
    if (m_zoomSteps <= kMinZoomSteps)
        return;
    --m_zoomSteps;
    m_view->zoomOut(kZoomStepPoints);
    AnnounceZoom();
}

void TextBrowserPage::ZoomIn()
{
    if (m_zoomSteps >= kMaxZoomSteps)
        return;
    ++m_zoomSteps;
    m_view->zoomIn(kZoomStepPoints);
    AnnounceZoom();
}

void TextBrowserPage::ZoomDefault()
{
    m_view->zoomIn(-m_zoomSteps * kZoomStepPoints);
    m_zoomSteps = 0;
    AnnounceZoom();
}

bool TextBrowserPage::TryToClose(bool force)
{
    Q_UNUSED(force)
    AbortLoading();
    return true;
}

bool TextBrowserPage::Find(const QString &text, bool backward)
{
    if (text.isEmpty())
        return false;
    const QTextDocument::FindFlags flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (m_view->find(text, flags))
        return true;
    // Wrap around once, as browsers do.
    m_view->moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    return m_view->find(text, flags);
}

void TextBrowserPage::ScrollToEdge(bool top)
{
    QScrollBar *bar = m_view->verticalScrollBar();
    bar->setValue(top ? bar->minimum() : bar->maximum());
}

void TextBrowserPage::Navigate(const QString &url, bool addToHistory, bool noCache)
{
    if (url.isEmpty())
        return;
    AbortLoading();
    if (addToHistory) {
        while (m_history.size() > m_historyIndex + 1)
            m_history.removeLast();
        m_history.append(url);
        m_historyIndex = m_history.size() - 1;
    }

    const TabDataPtr tab = GetTabData();
    const bool newTabPage = url == TabRecordFactory::NewTabPageUrl();
    if (tab && !newTabPage) {
        // The first real address turns a new tab into a web tab.
        if (tab->IsNewTab())
            tab->SetTabType(TabData::TabTypeWeb);
        tab->SetUrl(url);
    }

    m_loading = true;
    m_pendingUrl = url;
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    Q_EMIT notify->SigLoadStart(tab);
    Q_EMIT notify->SigAddressChanged(tab, newTabPage ? QUrl() : QUrl(url));
    AnnounceState();

    if (TabRecordFactory::IsLocalUrl(url))
        StartLocal(url);
    else
        StartRemote(url, noCache);
}

void TextBrowserPage::StartLocal(const QString &url)
{
    Q_UNUSED(url)
    m_localTimer->start(LocalLoadMs());
}

void TextBrowserPage::StartRemote(const QString &url, bool noCache)
{
    const QUrl address(url);
    if (address.scheme() != QLatin1String("http") && address.scheme() != QLatin1String("https")) {
        m_view->SetRemoteHtml(QCoreApplication::translate("TextBrowserPage", "<h2>Cannot open this address</h2><p>The demo shows local pages and "
                                 "http or https pages only.</p>"));
        Finish(QCoreApplication::translate("TextBrowserPage", "Cannot open page"), TabRecordFactory::IconForUrl(QString()));
        return;
    }

    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(kTransferTimeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("KelTabBrowser/0.1 (demo)"));
    if (noCache)
        request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    QNetworkReply *reply = m_network->get(request);
    m_reply = reply;
    QObject::connect(reply, &QNetworkReply::finished, m_view, [this, reply] { RemoteFinished(reply); });

    auto *notice = new QLabel(QCoreApplication::translate("TextBrowserPage", "Loading %1 ...").arg(address.host()));
    notice->setObjectName(QStringLiteral("PageLoadingNotice"));
    ShowTabMask(notice, false, false, Qt::AlignCenter);
}

void TextBrowserPage::RemoteFinished(QNetworkReply *reply)
{
    reply->deleteLater();
    if (reply != m_reply)
        return;
    m_reply = nullptr;
    HideNotice();

    const QString url = reply->url().toString();
    if (reply->error() != QNetworkReply::NoError) {
        m_view->SetRemoteHtml(QCoreApplication::translate("TextBrowserPage", "<h2>Cannot load this page</h2><p>%1</p>").arg(reply->errorString().toHtmlEscaped()));
        Finish(QCoreApplication::translate("TextBrowserPage", "Cannot load page"), TabRecordFactory::IconForUrl(url));
        return;
    }

    const QByteArray body = reply->read(kMaxPageBytes);
    const QString contentType = reply->header(QNetworkRequest::ContentTypeHeader).toString().toLower();
    QString title;
    if (contentType.contains(QLatin1String("html"))) {
        m_view->SetRemoteHtml(DecodeHtml(body));
        title = m_view->documentTitle();
    } else if (IsTextType(contentType) || contentType.isEmpty()) {
        m_view->SetRemoteText(QString::fromUtf8(body));
    } else {
        m_view->SetRemoteText(QCoreApplication::translate("TextBrowserPage", "This address sends %1, which the demo does not show.").arg(contentType));
    }
    Finish(title.isEmpty() ? TabRecordFactory::PlaceholderTitle(url) : title.simplified(),
           TabRecordFactory::IconForUrl(url));
}

void TextBrowserPage::Finish(const QString &title, const QString &icon)
{
    m_loading = false;
    const TabDataPtr tab = GetTabData();
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    Q_EMIT notify->SigWebTitleChanged(tab, title);
    if (!icon.isEmpty())
        Q_EMIT notify->SigWebIconChanged(tab, icon);
    Q_EMIT notify->SigLoadFinished(tab);
    AnnounceState();
}

void TextBrowserPage::AbortLoading()
{
    m_localTimer->stop();
    QNetworkReply *reply = m_reply;
    m_reply = nullptr;
    if (reply) {
        // abort() finishes the reply at once; it is no longer ours to show.
        reply->abort();
    }
    HideNotice();
    m_loading = false;
}

void TextBrowserPage::HideNotice()
{
    if (TabMask *mask = GetTabMask()) {
        mask->SetMaskWidget(nullptr, false, false, Qt::AlignCenter);
        mask->hide();
    }
}

void TextBrowserPage::AnnounceState()
{
    const TabDataPtr tab = GetTabData();
    BrowserMainNotify *notify = BrowserMainNotify::Instance();
    Q_EMIT notify->SigWebStatusChanged(tab, m_loading, GetBackEnabled(), GetForwardEnabled());
    const QString url = CurrentUrl();
    Q_EMIT notify->SigAddressChanged(tab, url == TabRecordFactory::NewTabPageUrl() ? QUrl() : QUrl(url));
}

void TextBrowserPage::AnnounceZoom()
{
    const double percent = 100.0 + 10.0 * m_zoomSteps;
    Q_EMIT BrowserMainNotify::Instance()->SigGetZoomPercent(GetTabData(), percent, m_zoomSteps >= kMaxZoomSteps,
                                                            m_zoomSteps <= kMinZoomSteps);
}

QString TextBrowserPage::CurrentUrl() const
{
    if (m_historyIndex >= 0 && m_historyIndex < m_history.size())
        return m_history.at(m_historyIndex);
    return m_pendingUrl;
}
