// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "browsergesturehandler.h"
#include "dpitool.h"
#include "gesturetestsupport.h"
#include "gesturetoast.h"
#include "mousestrokerecognizer.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QRandomGenerator>
#include <QtMath>

#include <limits>

using namespace GestureTest;

namespace {

// Writes down every mouse and context-menu event that reaches it.
class EventRecorder : public QWidget
{
public:
    using QWidget::QWidget;

    struct Mouse
    {
        QEvent::Type type;
        Qt::MouseButton button;
    };
    QList<Mouse> mouse;
    QList<QPair<QPoint, QContextMenuEvent::Reason>> contextMenus;

    int Count(QEvent::Type type, Qt::MouseButton button) const
    {
        int count = 0;
        for (const Mouse &m : mouse) {
            if (m.type == type && m.button == button)
                ++count;
        }
        return count;
    }

protected:
    void mousePressEvent(QMouseEvent *event) override { mouse.append({event->type(), event->button()}); }
    void mouseReleaseEvent(QMouseEvent *event) override { mouse.append({event->type(), event->button()}); }
    void mouseMoveEvent(QMouseEvent *event) override { mouse.append({event->type(), event->button()}); }
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        contextMenus.append(qMakePair(event->pos(), event->reason()));
    }
};

QVector<QPoint> Polyline(const QVector<QPoint> &corners, int step = 2)
{
    QVector<QPoint> points;
    points << corners.first();
    for (int i = 1; i < corners.size(); ++i) {
        const QPoint from = corners.at(i - 1);
        const QPoint to = corners.at(i);
        const int steps = qMax(1, qMax(qAbs(to.x() - from.x()), qAbs(to.y() - from.y())) / step);
        for (int s = 1; s <= steps; ++s)
            points << from + (to - from) * s / steps;
    }
    return points;
}

} // namespace

class TstMouseStrokeRecognizer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Recorders> m_recorders;
    std::unique_ptr<EventRecorder> m_window;
    EventRecorder *m_child = nullptr;
    std::unique_ptr<MouseStrokeRecognizer> m_recognizer;

    QWindow *Window() const { return m_window->windowHandle(); }

    // Draws a stroke with real mouse events through the window system layer.
    void Stroke(const QVector<QPoint> &corners)
    {
        const QVector<QPoint> points = Polyline(corners, 4);
        QTest::mousePress(Window(), Qt::RightButton, Qt::NoModifier, points.first());
        for (int i = 1; i < points.size(); ++i)
            QTest::mouseMove(Window(), points.at(i));
        QTest::mouseRelease(Window(), Qt::RightButton, Qt::NoModifier, points.last());
    }

    static GestureToast *Toast()
    {
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (QWidget *widget : widgets) {
            if (auto *toast = qobject_cast<GestureToast *>(widget))
                return toast;
        }
        return nullptr;
    }

private Q_SLOTS:
    void init()
    {
        DpiTool::SetScaleFactor(1.0);
        m_recorders.reset(new Recorders);

        m_window.reset(new EventRecorder);
        m_window->setGeometry(50, 50, 400, 400);
        m_child = new EventRecorder(m_window.get());
        m_child->setGeometry(200, 200, 150, 150);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));

        m_recognizer.reset(new MouseStrokeRecognizer);
        m_recognizer->SetGestureHandler(m_recorders->Handler());
        m_recognizer->Attach(m_window.get());
    }

    void cleanup()
    {
        m_recognizer.reset();
        m_window.reset();
        m_child = nullptr;
        m_recorders.reset();
        DpiTool::SetScaleFactor(0);
    }

    // --- recognition of point sequences ---------------------------------------

    void recognize_data()
    {
        QTest::addColumn<QVector<QPoint>>("points");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<QStringList>("codes");

        QTest::newRow("an L: down, then right") << Polyline({{50, 20}, {50, 150}, {150, 150}}) << 20
                                                << QStringList{"D", "R"};
        QTest::newRow("up, then right") << Polyline({{50, 150}, {50, 40}, {160, 40}}) << 20 << QStringList{"U", "R"};
        QTest::newRow("right, then back left") << Polyline({{10, 50}, {150, 50}, {20, 50}}) << 20
                                               << QStringList{"R", "L"};
        QTest::newRow("left") << Polyline({{200, 50}, {100, 52}}) << 20 << QStringList{"L"};
        QTest::newRow("up") << Polyline({{50, 200}, {48, 100}}) << 20 << QStringList{"U"};

        // A horizontal line drawn by a shaky hand.
        QVector<QPoint> jitter;
        QRandomGenerator generator(99);
        for (int x = 0; x <= 200; x += 2)
            jitter << QPoint(x, 100 + int(generator.bounded(7)) - 3);
        QTest::newRow("jitter along a line") << jitter << 20 << QStringList{"R"};
        QVector<QPoint> verticalJitter;
        for (int y = 300; y >= 100; y -= 3)
            verticalJitter << QPoint(50 + int(generator.bounded(9)) - 4, y);
        QTest::newRow("jitter along a vertical line") << verticalJitter << 20 << QStringList{"U"};

        QTest::newRow("too short to count") << Polyline({{50, 50}, {65, 50}}) << 20 << QStringList();
        QTest::newRow("too short in both directions") << Polyline({{50, 50}, {50, 65}, {64, 65}}) << 20
                                                      << QStringList();
        QTest::newRow("just the minimum") << Polyline({{50, 50}, {70, 50}}) << 20 << QStringList{"R"};
        QTest::newRow("one short of the minimum") << Polyline({{50, 50}, {69, 50}}) << 20 << QStringList();
        QTest::newRow("tiny detour dropped, runs merged")
            << Polyline({{0, 100}, {100, 100}, {100, 92}, {200, 92}}) << 20 << QStringList{"R"};
        QTest::newRow("tiny tail dropped") << Polyline({{50, 20}, {50, 150}, {60, 150}}) << 20 << QStringList{"D"};
        QTest::newRow("second leg too short for a larger minimum")
            << Polyline({{50, 20}, {50, 150}, {80, 150}}) << 40 << QStringList{"D"};
        QTest::newRow("no points") << QVector<QPoint>() << 20 << QStringList();
        QTest::newRow("one point") << QVector<QPoint>{{5, 5}} << 20 << QStringList();
        QTest::newRow("standing still") << QVector<QPoint>(50, QPoint(5, 5)) << 20 << QStringList();

        // A corner drawn round, as hands do.
        QVector<QPoint> rounded = Polyline({{50, 0}, {50, 100}});
        for (int degrees = 180; degrees >= 90; degrees -= 10) {
            const double radians = qDegreesToRadians(double(degrees));
            rounded << QPoint(65 + qRound(15 * qCos(radians)), 100 + qRound(15 * qSin(radians)));
        }
        rounded += Polyline({{65, 115}, {180, 115}});
        QTest::newRow("rounded corner") << rounded << 20 << QStringList{"D", "R"};

        QTest::newRow("minimum below 4 is raised to 4") << Polyline({{0, 0}, {3, 0}}, 1) << 0 << QStringList();
        QTest::newRow("zigzag") << Polyline({{0, 0}, {60, 0}, {60, 60}, {120, 60}, {120, 0}}) << 20
                                << QStringList{"R", "D", "R", "U"};

        // Positions at the ends of the int range: differences and running lengths
        // overflowed int, which gave no code at all (or the wrong one) and undefined
        // behaviour under the sanitizers.
        constexpr int kMin = std::numeric_limits<int>::min();
        constexpr int kMax = std::numeric_limits<int>::max();
        QTest::newRow("overflow: (-1,0) to (INT_MAX,0), step 20")
            << QVector<QPoint>{{-1, 0}, {kMax, 0}} << 20 << QStringList{"R"};
        QTest::newRow("overflow: INT_MAX to INT_MIN")
            << QVector<QPoint>{{kMax, 0}, {kMin, 0}} << 20 << QStringList{"L"};
        QTest::newRow("overflow: INT_MIN to INT_MAX, vertical")
            << QVector<QPoint>{{0, kMin}, {0, kMax}} << 20 << QStringList{"D"};
        QTest::newRow("overflow: corner to corner")
            << QVector<QPoint>{{kMin, kMin}, {kMax, kMax}} << 20 << QStringList{"R"};
        QTest::newRow("overflow: running length past INT_MAX")
            << QVector<QPoint>{{kMin, 5}, {-1, 5}, {kMax, 5}, {kMax, 5}} << 20 << QStringList{"R"};
        QTest::newRow("overflow: there and back across the range")
            << QVector<QPoint>{{kMin, 0}, {kMax, 0}, {kMin, 0}, {kMax, 0}} << 20 << QStringList{"R", "L", "R"};
        QTest::newRow("overflow: right, then up across the range")
            << QVector<QPoint>{{kMin, kMax}, {kMax, kMax}, {kMax, kMin}} << 20 << QStringList{"R", "U"};
        QTest::newRow("overflow: tiny wobble at INT_MIN")
            << QVector<QPoint>{{kMin, kMin}, {kMin + 3, kMin}} << 20 << QStringList();
        QTest::newRow("overflow: huge minimum")
            << QVector<QPoint>{{kMin, 0}, {kMax, 0}} << kMax << QStringList{"R"};
    }

    void recognize()
    {
        QFETCH(QVector<QPoint>, points);
        QFETCH(int, minimum);
        QFETCH(QStringList, codes);
        QCOMPARE(MouseStrokeRecognizer::RecognizeStroke(points, minimum), codes);
    }

    // Seeded random paths drawn anywhere in the int range, in huge and in tiny
    // steps: every result is a list of directions where no two neighbours repeat.
    void randomPathsOverTheWholeIntRange()
    {
        QRandomGenerator generator(20240518);
        const QString allowed = QStringLiteral("LRUD");
        for (int round = 0; round < 2000; ++round) {
            QVector<QPoint> points;
            const int count = 1 + int(generator.bounded(40));
            const bool tiny = generator.bounded(2) == 0;
            QPoint at(int(generator.generate()), int(generator.generate()));
            for (int i = 0; i < count; ++i) {
                if (tiny) {
                    // Small steps around a random place, often at the edges of the range.
                    const qint64 lowest = std::numeric_limits<int>::min();
                    const qint64 highest = std::numeric_limits<int>::max();
                    at = QPoint(int(qBound(lowest, qint64(at.x()) + int(generator.bounded(81)) - 40, highest)),
                                int(qBound(lowest, qint64(at.y()) + int(generator.bounded(81)) - 40, highest)));
                } else {
                    at = QPoint(int(generator.generate()), int(generator.generate()));
                }
                points << at;
            }
            const int minimum = int(generator.bounded(200));
            const QStringList codes = MouseStrokeRecognizer::RecognizeStroke(points, minimum);
            for (int i = 0; i < codes.size(); ++i) {
                QCOMPARE(codes.at(i).size(), 1);
                QVERIFY2(allowed.contains(codes.at(i)), qPrintable(codes.join(QLatin1Char(','))));
                if (i > 0)
                    QVERIFY(codes.at(i) != codes.at(i - 1));
            }
        }
    }

    void settings()
    {
        MouseStrokeRecognizer recognizer;
        QCOMPARE(recognizer.MinimumSegmentLength(), 20);
        recognizer.SetMinimumSegmentLength(30);
        QCOMPARE(recognizer.MinimumSegmentLength(), 30);
        recognizer.SetMinimumSegmentLength(1);
        QCOMPARE(recognizer.MinimumSegmentLength(), 4);
        QCOMPARE(recognizer.AttachedWidget(), nullptr);
        QCOMPARE(recognizer.GestureHandler(), nullptr);
        QCOMPARE(m_recognizer->AttachedWidget(), static_cast<QWidget *>(m_window.get()));
        QCOMPARE(m_recognizer->GestureHandler(), m_recorders->handler.get());
    }

    // --- real mouse events ------------------------------------------------------

    void strokeRunsTheAction()
    {
        QSignalSpy changed(m_recognizer.get(), &MouseStrokeRecognizer::SigStrokeChanged);
        QSignalSpy finished(m_recognizer.get(), &MouseStrokeRecognizer::SigStrokeFinished);

        const QVector<QPoint> points = Polyline({{50, 20}, {50, 150}, {150, 150}}, 4);
        QTest::mousePress(Window(), Qt::RightButton, Qt::NoModifier, points.first());
        QVERIFY(m_recognizer->IsStrokeActive());
        for (int i = 1; i < points.size(); ++i) {
            QTest::mouseMove(Window(), points.at(i));
            if (points.at(i) == QPoint(50, 150)) {
                // Halfway: the toast names the action of what is drawn so far.
                QVERIFY(Toast() && Toast()->isVisible());
                QCOMPARE(Toast()->Text(), QStringLiteral("PageDown"));
            }
        }
        QCOMPARE(Toast()->Text(), QStringLiteral("Close tab"));
        QTest::mouseRelease(Window(), Qt::RightButton, Qt::NoModifier, points.last());
        QVERIFY(!m_recognizer->IsStrokeActive());

        QCOMPARE(changed.count(), 2);
        QCOMPARE(changed.at(0).at(0).toStringList(), QStringList{"D"});
        QCOMPARE(changed.at(1).at(0).toStringList(), (QStringList{"D", "R"}));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toStringList(), (QStringList{"D", "R"}));
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionCloseTab")});
        QCOMPARE(m_recorders->monitor.events.size(), 1);
        QVERIFY(!Toast()->isVisible());

        // The widget saw none of it: no right button, no drag, no context menu.
        QCOMPARE(m_window->Count(QEvent::MouseButtonPress, Qt::RightButton), 0);
        QCOMPARE(m_window->Count(QEvent::MouseButtonRelease, Qt::RightButton), 0);
        QCOMPARE(m_window->Count(QEvent::MouseMove, Qt::NoButton), 0);
        QCOMPARE(m_window->contextMenus.size(), 0);
    }

    void strokeOverAChildWorksAndMayLeaveIt()
    {
        // Starts on the child and ends outside it.
        Stroke({{300, 220}, {300, 120}, {380, 120}});
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionNextTab")});
        QCOMPARE(m_child->mouse.size(), 0);
        QCOMPARE(m_child->contextMenus.size(), 0);
    }

    void plainRightClickGivesOneContextMenu_data()
    {
        QTest::addColumn<QVector<QPoint>>("path");
        QTest::addColumn<bool>("onChild");
        QTest::newRow("click") << QVector<QPoint>{{60, 70}} << false;
        QTest::newRow("movement shorter than the minimum") << QVector<QPoint>{{60, 70}, {72, 75}} << false;
        QTest::newRow("click on a child") << QVector<QPoint>{{260, 290}} << true;
    }

    void plainRightClickGivesOneContextMenu()
    {
        QFETCH(QVector<QPoint>, path);
        QFETCH(bool, onChild);

        QSignalSpy finished(m_recognizer.get(), &MouseStrokeRecognizer::SigStrokeFinished);
        QTest::mousePress(Window(), Qt::RightButton, Qt::NoModifier, path.first());
        for (int i = 1; i < path.size(); ++i)
            QTest::mouseMove(Window(), path.at(i));
        QTest::mouseRelease(Window(), Qt::RightButton, Qt::NoModifier, path.last());
        QCoreApplication::processEvents();

        EventRecorder *target = onChild ? m_child : m_window.get();
        EventRecorder *other = onChild ? m_window.get() : m_child;
        const QPoint expected = onChild ? path.first() - m_child->pos() : path.first();
        QCOMPARE(target->contextMenus.size(), 1);
        QCOMPARE(target->contextMenus.at(0).first, expected);
        QCOMPARE(target->contextMenus.at(0).second, QContextMenuEvent::Mouse);
        QCOMPARE(other->contextMenus.size(), 0);
        QCOMPARE(target->Count(QEvent::MouseButtonPress, Qt::RightButton), 0);
        QCOMPARE(finished.count(), 0);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QVERIFY(m_recorders->monitor.events.isEmpty());
        QVERIFY(!Toast());
    }

    void keyboardContextMenuPassesUntouched()
    {
        QContextMenuEvent request(QContextMenuEvent::Keyboard, QPoint(5, 5), m_window->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(m_window.get(), &request);
        QCOMPARE(m_window->contextMenus.size(), 1);
        QCOMPARE(m_window->contextMenus.at(0).second, QContextMenuEvent::Keyboard);
    }

    void gesturesOffLeaveTheRightButtonAlone()
    {
        KelMouseGesture::Instance()->SetEnableGesture(false);
        Stroke({{50, 20}, {50, 150}, {150, 150}});
        QCOMPARE(m_window->Count(QEvent::MouseButtonPress, Qt::RightButton), 1);
        QCOMPARE(m_window->Count(QEvent::MouseButtonRelease, Qt::RightButton), 1);
        QVERIFY(m_window->Count(QEvent::MouseMove, Qt::NoButton) > 0);
        // The platform's own request, exactly once.
        QCOMPARE(m_window->contextMenus.size(), 1);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QVERIFY(!Toast());
    }

    void leftDragIsUntouched()
    {
        QTest::mousePress(Window(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 20));
        QTest::mouseMove(Window(), QPoint(50, 150));
        QTest::mouseRelease(Window(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 150));
        QCOMPARE(m_window->Count(QEvent::MouseButtonPress, Qt::LeftButton), 1);
        QCOMPARE(m_window->Count(QEvent::MouseButtonRelease, Qt::LeftButton), 1);
        QVERIFY(!m_recognizer->IsStrokeActive());
        QVERIFY(m_recorders->delegate.calls.isEmpty());
    }

    void anotherButtonCancelsTheStroke()
    {
        QSignalSpy finished(m_recognizer.get(), &MouseStrokeRecognizer::SigStrokeFinished);
        const QVector<QPoint> points = Polyline({{50, 20}, {50, 150}}, 4);
        QTest::mousePress(Window(), Qt::RightButton, Qt::NoModifier, points.first());
        for (int i = 1; i < points.size(); ++i)
            QTest::mouseMove(Window(), points.at(i));
        QVERIFY(Toast() && Toast()->isVisible());
        QTest::mousePress(Window(), Qt::LeftButton, Qt::NoModifier, points.last());
        QVERIFY(!m_recognizer->IsStrokeActive());
        QVERIFY(!Toast()->isVisible());
        QTest::mouseRelease(Window(), Qt::LeftButton, Qt::NoModifier, points.last());
        QTest::mouseRelease(Window(), Qt::RightButton, Qt::NoModifier, points.last());
        QCOMPARE(finished.count(), 0);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QVERIFY(m_recorders->monitor.events.isEmpty());
        QCOMPARE(m_window->contextMenus.size(), 0);
    }

    void widgetsOutsideAreUntouched()
    {
        m_recognizer->Attach(m_child);
        Stroke({{50, 20}, {50, 150}, {150, 150}});
        QCOMPARE(m_window->Count(QEvent::MouseButtonPress, Qt::RightButton), 1);
        QCOMPARE(m_window->contextMenus.size(), 1);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
    }

    void detachedRecognizerWatchesNothing()
    {
        m_recognizer->Attach(nullptr);
        QCOMPARE(m_recognizer->AttachedWidget(), nullptr);
        Stroke({{50, 20}, {50, 150}, {150, 150}});
        QCOMPARE(m_window->Count(QEvent::MouseButtonPress, Qt::RightButton), 1);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
    }

    void signalsWithoutHandler()
    {
        m_recognizer->SetGestureHandler(nullptr);
        QSignalSpy finished(m_recognizer.get(), &MouseStrokeRecognizer::SigStrokeFinished);
        Stroke({{50, 150}, {50, 40}, {160, 40}});
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(0).toStringList(), (QStringList{"U", "R"}));
        QVERIFY(m_recorders->delegate.calls.isEmpty());
    }

    void minimumScalesWithDpi()
    {
        // 30 pixels is a direction at 1.0 but not at 2.0, where the minimum is 40.
        const QVector<QPoint> path{{50, 50}, {80, 50}};
        Stroke(path);
        QCOMPARE(m_recorders->delegate.calls, QStringList{QStringLiteral("ActionForward")});
        m_recorders->delegate.calls.clear();
        DpiTool::SetScaleFactor(2.0);
        Stroke(path);
        QVERIFY(m_recorders->delegate.calls.isEmpty());
        QCOMPARE(m_window->contextMenus.size(), 1);
    }

    void destroyedWidgetMidStroke()
    {
        auto *doomed = new EventRecorder(m_window.get());
        doomed->setGeometry(0, 0, 100, 100);
        doomed->show();
        m_recognizer->Attach(doomed);
        QTest::mousePress(Window(), Qt::RightButton, Qt::NoModifier, QPoint(50, 50));
        QVERIFY(m_recognizer->IsStrokeActive());
        delete doomed;
        QTest::mouseRelease(Window(), Qt::RightButton, Qt::NoModifier, QPoint(50, 50));
        QCOMPARE(m_recognizer->AttachedWidget(), nullptr);
        QCOMPARE(m_window->contextMenus.size(), 0);
    }
};

KELTAB_TEST_MAIN(TstMouseStrokeRecognizer)
#include "tst_mousestrokerecognizer.moc"
