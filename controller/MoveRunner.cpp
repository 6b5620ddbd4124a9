#include "controller/MoveRunner.h"

namespace tarnwick {

void MoveRunner::run(Job job) {
    auto s = state_;
    ++s->running;
    s->status.set(job.startText.empty() ? "Moving windows to " + job.target.name + "\u2026"
                                        : job.startText);
    s->dispatch.background(QoS::userInitiated, [s, job = std::move(job)]() mutable {
        int64_t restored = 0;
        auto windows = std::move(job.windows);
        if (job.layout == LayoutFirst::whenRemembered && s->prefs.rememberLayouts()) {
            // The setup's saved arrangement first; only what it does not know moves.
            auto r = s->layouts.restore(windows ? *windows : s->mover.windows());
            restored = r.restored;
            windows = std::move(r.unmatched);
        }
        WindowMover::Progress report;
        if (job.reporting == Reporting::perWindow)
            // Each report hops to the main thread on its own, in order, before the summary.
            report = [s, progress = job.progress](int64_t i, int64_t n, const std::string& app) {
                s->dispatch.main([s, progress, i, n, app] {
                    s->status.set("Moving " + std::to_string(i) + " of " + std::to_string(n) +
                                  ": " + app + "\u2026");
                    if (progress) progress(i, n, app);
                });
            };
        auto result = s->mover.moveAll(job.target, job.all, s->prefs.placement(), windows, report);
        s->dispatch.main([s, result, restored, name = job.target.name, done = std::move(job.done)] {
            --s->running;
            s->status.set(summary(result, name, restored));
            if (done) done(result, restored);
        });
    });
}

std::string MoveRunner::summary(const WindowMover::MoveResult& result, const std::string& to,
                                int64_t restored) {
    auto text = result.summary(to);
    if (restored >= 1) text += " \u00b7 restored " + std::to_string(restored);
    return text;
}

} // namespace tarnwick
