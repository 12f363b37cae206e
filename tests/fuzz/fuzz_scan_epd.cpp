// Any bytes as a .epd book: the scan and the walk never read outside a
// buffer or the work file.
#include "scan_fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    marlith::fuzz::scanAndWalk(data, size, ".epd",
                               [](const QString& book, marlith::WorkFile& work) {
                                   return marlith::scanEpd(book, work, {});
                               });
    return 0;
}
