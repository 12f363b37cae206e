// Any bytes as the start folder and the arguments, each ended by a NUL byte: made absolute,
// every argument stays in its place, an empty one stays empty, the others become absolute.
#include "core/startup.h"
#include "fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QStringList arguments = marlith::fuzz::textOf(data, size).split(QChar(u'\0'));
    const QString startFolder = arguments.takeFirst();
    const QStringList absolute = marlith::absoluteArguments(arguments, startFolder);
    if (absolute.size() != arguments.size()) std::abort();
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i].trimmed().isEmpty() != absolute[i].isEmpty()) std::abort();
        // The start folder is a real one: whatever the argument, a path in
        // the file system comes out, never one that reads as Qt's resources.
        if (!absolute[i].isEmpty() && startFolder.startsWith(u'/') && !absolute[i].startsWith(u'/'))
            std::abort();
    }
    const marlith::CommandLine line = marlith::splitCommandLine(absolute);
    if (absolute.isEmpty() ? !line.bookFile.isEmpty() || !line.rest.isEmpty()
                           : line.rest.size() != absolute.size() - 1 ||
                                 line.bookFile != absolute.first().trimmed())
        std::abort();
    // The further instance gets the rest and does the same with it.
    (void)marlith::splitCommandLine(line.rest);
    return 0;
}
