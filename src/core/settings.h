// The settings file "Marlith.ini" in the program folder: reading it at start
// and at each change of style, rewriting it at the end, and the list of
// recent books with its menu captions.
#pragma once

#include "engines/popeye_fields.h"
#include "output/export_choices.h"
#include "styles/style.h"

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>

namespace marlith {

inline constexpr const char* kSettingsFileName = "Marlith.ini";
// The temporary name through which this copy of the program replaces the
// settings file: its own, so that two copies never write the same file.
QString settingsTempName();

using RecentList = std::array<QString, 4>; // most recent first; unused entries empty

// What a session leaves for the next besides the styles: the position on
// the board, the main window's place and size, the Popeye window's fields,
// the choices of Export Diagram.
struct KeptSession {
    QString position;
    QRect window; // empty when none was kept
    PopeyeFields popeyeFields;
    ExportChoices exportChoices;
};

// A value as the settings grammar can hold it: "%", ",", ";", quotes, "=",
// line ends and other control characters, the blanks at its ends and every
// character of `extra` written as "%XX" (bytes of UTF-8), so that no value
// can end an item or a line.
QString escapeSettingsValue(const QString& value, QStringView extra = {});
QString unescapeSettingsValue(const QString& value);

struct SettingsRead {
    bool opened = false;         // the file was there and could be read
    bool stoppedAtFault = false; // a value that didn't fit its field ended the reading
    QStringList styleNames;      // the names of the blocks, in file order; first reading only
};

// Resets the style and RecentEngine, then takes the file item by item:
// RecentFile, RecentEngine, RecentStyle/Style and BeginStyle wherever they
// stand, every other key only inside the block of the wanted style. When
// StyleName holds a name on entry (a style was picked), that block is read and
// the name and the style list are left alone; when it is empty (start), the
// RecentStyle line or else the first block decides. Whatever happens, the
// record holds what was read before the end or the fault. The caller empties
// FullDictionary and draws.
// With `kept`, the session's lines fill it; a settings file without them
// leaves it as it was.
SettingsRead readSettings(const QString& settingsPath, const QString& programFolder, Style& style,
                          RecentList& recentFile, QString& recentEngine,
                          KeptSession* kept = nullptr);

// Puts path at the head of the list: an entry equal to it (compared exactly)
// moves up, else the oldest falls out.
void addRecent(RecentList& recentFile, const QString& path);

struct RecentMenuItem {
    QString caption;
    bool visible = false;
};

// "&1 " and the shortened path, and so on; an empty entry is hidden.
std::array<RecentMenuItem, 4> recentMenuItems(const RecentList& recentFile);

// A path shortened for display to about n characters, cut at folder
// boundaries from the left, with its root kept in front: "/.../C/D.FEN".
QString shortenPath(const QString& w, int n);

// Test seams for the replacement of the settings file; empty members take
// the real behaviour.
struct SettingsWriteSeams {
    // Runs before line number `line` (from 0) goes to the temporary file;
    // false makes the writing fail there.
    std::function<bool(int line)> beforeLine;
    // Stands in for the rename of the temporary file over the settings file.
    std::function<bool(const QString& from, const QString& to)> rename;
};

// The lines of a text file, split at CR LF, LF or CR, without the line ends.
QList<QByteArray> splitLines(const QByteArray& bytes);

// Writes the lines, each ended by CR LF, into the temporary file in the
// program folder, puts it on disk and renames it over "Marlith.ini". On any failure
// the temporary file is removed, the settings file stays as it was, and the
// result is false.
bool replaceSettingsFile(const QString& programFolder, const QList<QByteArray>& lines,
                         const SettingsWriteSeams& seams = {});

// The recent books (oldest first) and the engine, then every line of the old
// file as it stands, except that a style line carries the current name and
// the old recent lines go. Without an old file the new one holds the recent
// lines alone. A settings file that is there but can't be read is left alone.
// With `kept`, the session's lines follow the engine's.
bool writeSettings(const QString& programFolder, const RecentList& recentFile,
                   const QString& recentEngine, const QString& styleName,
                   const SettingsWriteSeams& seams = {}, const KeptSession* kept = nullptr);

// The settings file's lines with the block of the style `styleName` taken
// out: from its BeginStyle line up to the next block, what stands behind it
// going with it. With `block` (lines without ends), the style's block goes in
// front of the first block whose upper-cased name sorts after it, or at the
// end, one blank line apart from its neighbours. A block is opened only by a
// line that begins with "BeginStyle" and a "=" (in any case), or one with a
// ";" comment behind its first character, whose text before it is trimmed.
QList<QByteArray> replaceStyleBlock(const QList<QByteArray>& lines, const QString& styleName,
                                    const QList<QByteArray>* block);

// Stores the style's block in the settings file, in the order of names, or
// with `store` false takes it out. Every other line stays as it stands. A
// missing settings file becomes one that holds the block alone; one that
// can't be read is left alone and the result is false.
bool writeStyles(const QString& programFolder, Style& style, bool store,
                 const SettingsWriteSeams& seams = {});

} // namespace marlith
