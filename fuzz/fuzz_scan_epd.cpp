// Any bytes as a .epd book: the scan and the walk never read outside a buffer or the work file.
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return marlith::fuzz::scanAndWalk(data, size, ".epd", [](auto& book, auto& work) {
        return marlith::scanEpd(book, work, {});
    });
}
