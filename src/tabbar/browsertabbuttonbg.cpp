// SPDX-License-Identifier: MIT
#include "browsertabbuttonbg.h"

#include "dpitool.h"
#include "tabworkcounter_p.h"

#include <QPainter>
#include <QPixmap>

namespace {
constexpr int kCapWidth = 16;     // design pixels of each rounded end
constexpr int kButtonHeight = 32; // design pixels, the tab buttons' height
} // namespace

BrowserTabButtonBg::BrowserTabButtonBg() = default;

BrowserTabButtonBg::~BrowserTabButtonBg() = default;

QString BrowserTabButtonBg::FrontImage()
{
    return QStringLiteral(":/images/tab_bar/tabbutton_front.png");
}

QString BrowserTabButtonBg::BackImage()
{
    return QStringLiteral(":/images/tab_bar/tabbutton_back.png");
}

QString BrowserTabButtonBg::BackHoverImage()
{
    return QStringLiteral(":/images/tab_bar/tabbutton_back_hover.png");
}

QPixmap *BrowserTabButtonBg::GetButtonBg(int width, bool checked, bool hovered)
{
    if (width != m_width) {
        m_width = width;
        m_front.reset();
        m_back.reset();
        m_backHover.reset();
        m_front = Build(Front);
        m_back = Build(Back);
        m_backHover = Build(BackHover);
    }
    if (checked)
        return m_front.get();
    return hovered ? m_backHover.get() : m_back.get();
}

void BrowserTabButtonBg::RebuildFront()
{
    Source(Front, true);
    m_front = Build(Front);
}

void BrowserTabButtonBg::RebuildBack()
{
    Source(Back, true);
    m_back = Build(Back);
}

void BrowserTabButtonBg::RebuildBackHover()
{
    Source(BackHover, true);
    m_backHover = Build(BackHover);
}

void BrowserTabButtonBg::Clear()
{
    m_width = 0;
    m_front.reset();
    m_back.reset();
    m_backHover.reset();
    for (auto &source : m_sources)
        source.reset();
}

int BrowserTabButtonBg::Width() const
{
    return m_width;
}

int BrowserTabButtonBg::BuildCount() const
{
    return m_buildCount;
}

const QPixmap &BrowserTabButtonBg::Source(Kind kind, bool reload)
{
    std::unique_ptr<QPixmap> &source = m_sources[kind];
    if (!source || reload) {
        const QString image = kind == Front ? FrontImage() : (kind == Back ? BackImage() : BackHoverImage());
        source = std::make_unique<QPixmap>(image);
    }
    return *source;
}

std::unique_ptr<QPixmap> BrowserTabButtonBg::Build(Kind kind)
{
    // Nothing to paint on: a null pixmap, which the button takes as "no background".
    if (m_width <= 0)
        return nullptr;

    ++m_buildCount;
    TabWorkCounter::Add(TabWorkCounter::BackgroundRender);
    const int height = DpiTool::ScaleDefault(kButtonHeight);
    auto result = std::make_unique<QPixmap>(m_width, height);
    result->fill(Qt::transparent);

    const QPixmap &source = Source(kind);
    if (source.isNull())
        return result;

    // The images are drawn at the resource scale (2x), so a cap is wider in the image
    // than on the screen; both ends are scaled into their screen width.
    const int capSrc = DpiTool::ScaleDefaultToImage(kCapWidth);
    const int capDst = DpiTool::ScaleDefault(kCapWidth);
    const int srcH = source.height();

    QPainter painter(result.get());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect(0, 0, capDst, height), source, QRect(0, 0, capSrc, srcH));
    painter.drawPixmap(QRect(m_width - capDst, 0, capDst, height), source,
                       QRect(source.width() - capSrc, 0, capSrc, srcH));

    // The middle column is repeated at its own size on the screen: scaled like the
    // caps, so that the outline at the top keeps one thickness across the tab.
    const int middle = m_width - 2 * capDst;
    if (middle > 0 && capDst > 0) {
        const QPixmap tile = source.copy(capSrc, 0, capSrc, srcH)
                                 .scaled(capDst, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        painter.drawTiledPixmap(QRect(capDst, 0, middle, height), tile);
    }
    return result;
}
