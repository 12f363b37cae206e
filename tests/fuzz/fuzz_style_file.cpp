// Any bytes as a style file: its blocks read, the names of their bitmaps cut
// to what the import looks for, and each block written back.
#include "core/style_import.h"
#include "styles/style_block.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const marlith::StyleFileBlocks read = marlith::readStyleFile(bytes);
    for (marlith::Style style : read.blocks) {
        (void)marlith::importedFileName(style.PiecesFile);
        (void)marlith::importedFileName(style.BorderFile);
        marlith::writeStyleBlock(style);
    }
    return 0;
}
