#pragma once

#include "platform/background_queue.h"
#include "platform/process_runner.h"

#include <QList>
#include <QMap>

#include <deque>
#include <utility>

namespace tamsel {

/// Answers by program name; a program without an answer can't be started.
class FakeProcessRunner final : public ProcessRunner {
public:
    QMap<QString, ProcessResult> answers;
    QList<QStringList> runs; ///< program and arguments, in order

    Result<ProcessResult> run(const QString& program, const QStringList& arguments) override {
        runs.append(QStringList{program} + arguments);
        const auto found = answers.constFind(program);
        if (found == answers.constEnd())
            return fail("no such program", program.toStdString());
        return *found;
    }
    QList<QStringList> takeRuns() { return std::exchange(runs, {}); }
};

/// Runs nothing until the test says so, then on the test's own thread.
class FakeBackgroundQueue final : public BackgroundQueue {
public:
    std::deque<std::function<void()>> tasks;

    void run(std::function<void()> task) override { tasks.push_back(std::move(task)); }
    void finish() override { tasks.clear(); }
    void runPending() {
        while (!tasks.empty()) {
            const auto task = std::move(tasks.front());
            tasks.pop_front();
            task();
        }
    }
};

} // namespace tamsel
