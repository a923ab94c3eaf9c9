// SPDX-License-Identifier: MIT
#pragma once

// Draws bench_tabstrips' figures as a PNG: one panel per operation, milliseconds per
// operation against the number of tabs, both on log scales, one line per strip.

#include "tabstripbench.h"

#include <QImage>
#include <QPainter>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace TabStripBench {

struct Series
{
    QString name;
    QColor color;
    QVector<int> tabs;         // the counts it was measured at
    QVector<Figures> figures;  // one per count
};

inline bool DrawChart(const QVector<Series> &series, const QVector<int> &counts, const QString &path)
{
    constexpr int kPanelW = 360;
    constexpr int kPanelH = 250;
    constexpr int kColumns = 4;
    constexpr int kLegendH = 40;
    const int panels = OperationCount + 1; // the operations, then memory per tab
    const int rows = (panels + kColumns - 1) / kColumns;
    QImage image(kColumns * kPanelW, kLegendH + rows * kPanelH, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QFont font = p.font();
    font.setPixelSize(12);
    p.setFont(font);

    // The legend.
    int lx = 16;
    for (const Series &s : series) {
        p.setPen(QPen(s.color, 3));
        p.drawLine(lx, 20, lx + 24, 20);
        p.setPen(Qt::black);
        p.drawText(lx + 30, 25, s.name);
        lx += 40 + p.fontMetrics().horizontalAdvance(s.name) + 24;
    }

    const double xMin = std::log10(double(counts.first()));
    const double xMax = std::log10(double(counts.last()));
    for (int panel = 0; panel < panels; ++panel) {
        const bool memory = panel == OperationCount;
        auto value = [&](const Figures &f) { return memory ? f.bytesPerTab / 1024.0 : f.msPerOp[panel]; };
        double lo = 1e9;
        double hi = 0;
        for (const Series &s : series) {
            for (const Figures &f : s.figures) {
                if (value(f) > 0) {
                    lo = std::min(lo, value(f));
                    hi = std::max(hi, value(f));
                }
            }
        }
        if (hi <= 0)
            continue;
        const double yMin = std::floor(std::log10(lo));
        const double yMax = std::max(yMin + 1, std::ceil(std::log10(hi)));
        const QRect frame(kColumns > 0 ? (panel % kColumns) * kPanelW : 0, kLegendH + (panel / kColumns) * kPanelH,
                          kPanelW, kPanelH);
        const QRect plot = frame.adjusted(58, 28, -16, -36);
        p.setPen(Qt::black);
        p.drawText(frame.adjusted(0, 4, 0, 0), Qt::AlignHCenter | Qt::AlignTop,
                   memory ? QStringLiteral("memory per tab (KiB)")
                          : QStringLiteral("%1 (ms per operation)").arg(QString::fromLatin1(OperationName(panel))));
        p.drawRect(plot);
        auto px = [&](int tabs) { return plot.left() + (std::log10(double(tabs)) - xMin) / (xMax - xMin) * plot.width(); };
        auto py = [&](double v) { return plot.bottom() - (std::log10(v) - yMin) / (yMax - yMin) * plot.height(); };
        p.setPen(QColor(210, 210, 210));
        for (double decade = yMin; decade <= yMax; decade += 1) {
            const double y = py(std::pow(10.0, decade));
            p.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        }
        p.setPen(Qt::black);
        for (double decade = yMin; decade <= yMax; decade += 1) {
            p.drawText(QRectF(frame.left(), py(std::pow(10.0, decade)) - 8, 54, 16), Qt::AlignRight | Qt::AlignVCenter,
                       QString::number(std::pow(10.0, decade), 'g', 3));
        }
        for (int tabs : counts) {
            p.drawText(QRectF(px(tabs) - 30, plot.bottom() + 4, 60, 16), Qt::AlignCenter, QString::number(tabs));
        }
        p.drawText(QRectF(plot.left(), plot.bottom() + 18, plot.width(), 16), Qt::AlignCenter, QStringLiteral("tabs"));
        for (const Series &s : series) {
            QPolygonF line;
            for (int i = 0; i < s.tabs.size(); ++i) {
                if (value(s.figures.at(i)) > 0)
                    line << QPointF(px(s.tabs.at(i)), py(value(s.figures.at(i))));
            }
            p.setPen(QPen(s.color, 2));
            p.drawPolyline(line);
            p.setBrush(s.color);
            for (const QPointF &point : qAsConst(line))
                p.drawEllipse(point, 3, 3);
            p.setBrush(Qt::NoBrush);
        }
    }
    p.end();
    return image.save(path);
}

} // namespace TabStripBench
