#include "devices/helpers.h"

#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tamsel {

namespace {

/// Enough for a few calls of the kernel; all of it may be locked into memory.
constexpr std::size_t stackSize = std::size_t{256} * 1024;

} // namespace

Helpers::Helpers() : m_ended(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

Helpers::~Helpers() {
    for (Job& job : m_jobs) {
        if (job.hasThread)
            ::pthread_join(job.thread, nullptr);
    }
}

void Helpers::run(std::function<void()> work, std::function<void()> done) {
    Job& job = m_jobs.emplace_back();
    job.owner = this;
    job.work = std::move(work);
    job.done = std::move(done);
    pthread_attr_t attributes;
    ::pthread_attr_init(&attributes);
    ::pthread_attr_setstacksize(&attributes, stackSize);
    job.hasThread = ::pthread_create(&job.thread, &attributes, runJob, &job) == 0;
    ::pthread_attr_destroy(&attributes);
    // Slow is better than never.
    if (!job.hasThread)
        runJob(&job);
}

void* Helpers::runJob(void* self) {
    Job& job = *static_cast<Job*>(self);
    job.work();
    job.work = nullptr;
    const std::lock_guard lock(job.owner->m_mutex);
    job.hasEnded = true;
    constexpr std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(job.owner->m_ended.get(), &one, sizeof one);
    return nullptr;
}

void Helpers::finish() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto taken = ::read(m_ended.get(), &count, sizeof count);
    std::list<Job> ended;
    {
        const std::lock_guard lock(m_mutex);
        for (auto job = m_jobs.begin(); job != m_jobs.end();) {
            const auto each = job++;
            if (each->hasEnded)
                ended.splice(ended.end(), m_jobs, each);
        }
    }
    for (Job& job : ended) {
        if (job.hasThread)
            ::pthread_join(job.thread, nullptr);
        job.done();
    }
}

} // namespace tamsel
