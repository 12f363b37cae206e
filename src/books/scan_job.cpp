#include "books/scan_job.h"

namespace marlith {

ScanJob::ScanJob(WorkFile work, Scan scan) : work_(std::move(work)) {
    thread_ = std::thread([this, scan = std::move(scan)] {
        const ScanControl control{[this](int32_t games) { games_.store(games); }, &stop_};
        result_ = scan(work_, control);
        games_.store(result_.gameCount);
        finished_.store(true, std::memory_order_release);
    });
}

ScanJob::~ScanJob() {
    stop();
    if (thread_.joinable()) thread_.join();
}

std::pair<BookScan, WorkFile> ScanJob::take() {
    if (thread_.joinable()) thread_.join();
    return {std::move(result_), std::move(work_)};
}

} // namespace marlith
