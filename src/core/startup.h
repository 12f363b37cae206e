// Start and stop of the program, apart from the windows: the temporary seed,
// the program folder, the styles that ship with it, the command line and the
// clean-up of temporary files.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QLockFile;

namespace marlith {

// "F" and the last six digits of the hundredths of a second since midnight.
QString makeTempSeed(int msecsSinceMidnight);

// An installed copy: its shipped files stand in "../share/marlith" of the
// executable's folder. A build tree has them there too, but keeps CMake's
// cache beside its bin folder, and its files in bin.
bool isInstalledCopy(const QString& executableFolder);

// The folder of the program, ending in "/": MARLITH_HOME when it is set;
// else, for an installed copy, the user's data folder, made when missing,
// whatever the rights on the executable's folder; else the folder of the
// executable (a build tree, a portable copy).
QString programFolderFrom(const QString& marlithHome, const QString& executableFolder,
                          const QString& dataFolder = {});

// The same from the environment, the executable's folder and the user's
// data folder ($XDG_DATA_HOME/marlith).
QString programFolder();

// The folder of the shipped style library, ending in "/": the first of
// "<executable folder>/../share/marlith/" and the executable folder itself
// that holds a Marlith.ini; empty when neither does.
QString shippedDataFolder(const QString& executableFolder);

// The first start: a program folder without a Marlith.ini gets the shipped
// one, and every bitmap that its styles name by a bare file name that the
// folder lacks. An existing file is never overwritten. When anything fails,
// what was copied goes again, and the program starts with its own defaults.
// True when the settings file was installed.
bool installShippedSettings(const QString& programFolder, const QString& shippedFolder);

// The command line's paths made absolute against the folder the program was
// started in, before the program moves into its own folder. Empty
// arguments stay empty.
QStringList absoluteArguments(const QStringList& arguments, const QString& startFolder);

// One book per instance: the first path is this instance's book, the others
// go to a further instance, which does the same with them.
struct CommandLine {
    QString bookFile;
    QStringList rest;
};
CommandLine splitCommandLine(const QStringList& arguments);

// Copies of the program that share a folder keep their temporary files
// apart: each holds a lock on its seed ("<seed>.lock") while it runs, and
// removes only the files of its seed. The seed after `seed`: "F999999" is
// followed by "F000000".
QString nextTempSeed(const QString& seed);

// Takes the first seed from `seed` on that no running copy holds, and holds
// it while the lock lives; `seed` comes back as the one taken. Null when
// none could be had.
std::unique_ptr<QLockFile> takeTempSeed(const QString& folder, QString& seed);

// A running copy holds the seed.
bool seedHeld(const QString& folder, const QString& seed);

// Deletes this copy's temporary files, "<seed>*.tmp" in either case;
// returns how many.
int deleteTempFiles(const QString& folder, const QString& seed);

// Deletes the files "f*.tmp" left by copies that no longer run: those whose
// seed `held` denies, and those without a seed.
int deleteOrphanedTempFiles(const QString& folder, const std::function<bool(const QString&)>& held);

} // namespace marlith
