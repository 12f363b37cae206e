// Start and stop of the program, apart from the windows: the temporary seed,
// the program folder, the command line and the clean-up of temporary files.
#pragma once

#include <QString>
#include <QStringList>

namespace marlith {

// "F" and the last six digits of the hundredths of a second since midnight.
QString makeTempSeed(int msecsSinceMidnight);

// The folder of the program, ending in "/": MARLITH_HOME when it is set,
// else the folder of the executable.
QString programFolderFrom(const QString& marlithHome, const QString& executableFolder);

// One book per instance: the first path is this instance's book, the others
// go to a further instance, which does the same with them.
struct CommandLine {
    QString bookFile;
    QStringList rest;
};
CommandLine splitCommandLine(const QStringList& arguments);

// Deletes the files "f*.tmp" (either case) in the folder; returns how many.
int deleteTempFiles(const QString& folder);

} // namespace marlith
