// Any bytes as a style file: its blocks read, the names of their bitmaps cut
// to what the import looks for, and each block written back.
#include "core/style_import.h"
#include "fuzz_support.h"
#include "styles/style_block.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (marlith::Style style : marlith::readStyleFile(marlith::fuzz::bytesOf(data, size)).blocks) {
        (void)marlith::importedFileName(style.PiecesFile);
        (void)marlith::importedFileName(style.BorderFile);
        marlith::writeStyleBlock(style);
    }
    return 0;
}
