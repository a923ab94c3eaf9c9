// SPDX-License-Identifier: MIT
#pragma once

// Steps that must run while a nested event loop has the program, a context menu's
// exec() for instance: the test cannot act from its own code then, since that code
// waits below the nested loop. A timer (which every event loop serves) checks the
// current step's condition and, once it holds, performs the step's action.
//
//     KelTest::Steps steps;
//     steps.When("menu shown", [] { return popupVisible(); }, [&] { pressEscape(); });
//     steps.Start();
//     openTheMenu();                      // may block in exec()
//     QTRY_VERIFY2(steps.Done(), qPrintable(steps.Waiting()));

#include <QApplication>
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <vector>

namespace KelTest {

class Steps : public QObject
{
public:
    explicit Steps(int stepTimeoutMs = 5000)
        : m_stepTimeout(stepTimeoutMs)
    {
        m_timer.setInterval(10);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { Poll(); });
    }

    /** Adds a step: once @p condition holds, @p action runs and the next step begins. */
    void When(const QString &name, std::function<bool()> condition, std::function<void()> action)
    {
        m_steps.push_back({name, std::move(condition), std::move(action)});
    }

    void Start()
    {
        m_next = 0;
        m_failed.clear();
        m_clock.start();
        m_timer.start();
    }

    /** Every step ran. */
    bool Done() const { return m_next >= m_steps.size() && m_failed.isEmpty(); }
    /** A step whose condition did not hold in time; the steps stopped there. */
    bool Failed() const { return !m_failed.isEmpty(); }
    /** The step waited for, or the one that timed out, for a failure message. */
    QString Waiting() const
    {
        if (!m_failed.isEmpty())
            return QStringLiteral("timed out waiting for: ") + m_failed;
        return m_next < m_steps.size() ? QStringLiteral("waiting for: ") + m_steps[m_next].name : QString();
    }

private:
    struct Step {
        QString name;
        std::function<bool()> condition;
        std::function<void()> action;
    };

    void Poll()
    {
        if (m_next >= m_steps.size()) {
            m_timer.stop();
            return;
        }
        Step &step = m_steps[m_next];
        if (!step.condition()) {
            if (m_clock.elapsed() > m_stepTimeout) {
                m_failed = step.name;
                m_timer.stop();
                // Give the program back to the test: end the loops of open popups.
                while (QWidget *popup = QApplication::activePopupWidget())
                    popup->close();
            }
            return;
        }
        ++m_next;
        m_clock.restart();
        step.action();
    }

    std::vector<Step> m_steps;
    size_t m_next = 0;
    QString m_failed;
    QTimer m_timer;
    QElapsedTimer m_clock;
    int m_stepTimeout;
};

} // namespace KelTest
