#include "books/scan_job.h"

#include "books/pgn_board.h"

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

ScanJob::Scan bookScanner(const QString& bookFile, const Style& style) {
    const QString extension = bookFile.right(4).toUpper();
    if (extension == QLatin1String(".PBM"))
        return [bookFile, style](WorkFile& file, const ScanControl& control) {
            return scanPbm(bookFile, file, style.BorderHeight, style.BorderWidth, style.PiecesList,
                           control);
        };
    if (extension == QLatin1String(".PGN"))
        return [bookFile, style](WorkFile& file, const ScanControl& control) {
            StylePgnBoard board(style);
            return scanPgn(bookFile, file, board, style.StartPos.toLatin1(), control);
        };
    // Any other text file is read as a book of positions.
    const auto scanText = extension == QLatin1String(".EPD") ? scanEpd : scanFen;
    return [bookFile, scanText](WorkFile& file, const ScanControl& control) {
        return scanText(bookFile, file, control);
    };
}

} // namespace marlith
