// SPDX-License-Identifier: MIT
#pragma once

#include <QTextBrowser>

/**
 * The text browser that shows a web tab. It loads resources (images, style sheets)
 * only from the demo's resources and local files, and none for a page fetched over
 * the network: such a page is shown as text, its images are left out quietly rather
 * than looked up on disk.
 */
class PageView : public QTextBrowser
{
    Q_OBJECT
public:
    explicit PageView(QWidget *parent = nullptr);
    ~PageView() override;

    /** Shows @p html fetched from the network: nothing it refers to is loaded. */
    void SetRemoteHtml(const QString &html);
    /** Shows @p text fetched from the network. */
    void SetRemoteText(const QString &text);
    /** Shows a local page (qrc: or file:) with its images and style sheets. */
    void SetLocalSource(const QUrl &url);

    QVariant loadResource(int type, const QUrl &name) override;

private:
    bool m_remote = false;
};
