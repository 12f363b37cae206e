// A book scan on a thread of its own, so that the window stays alive while a
// large book is read: the running count can be asked at any time, the scan
// can be stopped, and at its end the work file and the index are handed over.
#pragma once

#include "books/book_scan.h"
#include "styles/style.h"

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

namespace marlith {

class ScanJob {
  public:
    using Scan = std::function<BookScan(WorkFile& work, const ScanControl& control)>;

    // The scan starts at once.
    ScanJob(WorkFile work, Scan scan);
    // Stops the scan and waits for its end.
    ~ScanJob();
    ScanJob(const ScanJob&) = delete;
    ScanJob& operator=(const ScanJob&) = delete;

    int32_t games() const { return games_.load(std::memory_order_relaxed); }
    bool finished() const { return finished_.load(std::memory_order_acquire); }
    // The scan ends at its next line or entry, keeping what was read; no wait.
    void stop() { stop_.store(true, std::memory_order_relaxed); }
    // Waits for the end of the scan.
    std::pair<BookScan, WorkFile> take();

  private:
    WorkFile work_;
    BookScan result_;
    std::atomic<bool> stop_{false};
    std::atomic<int32_t> games_{0};
    std::atomic<bool> finished_{false};
    std::thread thread_;
};

// The scanner that a book's extension asks for (".PBM", ".EPD", ".PGN", any
// other a book of positions), holding copies of what it needs of the style.
ScanJob::Scan bookScanner(const QString& bookFile, const Style& style);

} // namespace marlith
