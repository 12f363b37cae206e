#include "engines/engine_process.h"

#include <QFileInfo>
#include <QProcess>

namespace marlith {

EngineProcess::EngineProcess() = default;

EngineProcess::~EngineProcess() {
    stop();
}

void EngineProcess::stop() {
    if (running()) {
        process_->kill();
        process_->waitForFinished(1000);
    }
}

bool EngineProcess::start(const QString& program, const QStringList& arguments,
                          const QString& folder, const QString& inputFile) {
    if (program.isEmpty() || !QFileInfo(program).isExecutable()) return false;
    stop();
    process_ = std::make_unique<QProcess>();
    process_->setWorkingDirectory(folder);
    process_->setStandardInputFile(inputFile.isEmpty() ? QProcess::nullDevice() : inputFile);
    process_->setProcessChannelMode(QProcess::MergedChannels);
    output_.clear();
    // The output is taken as it comes, so that a program that writes without
    // end costs no more than the part that is kept.
    QObject::connect(process_.get(), &QProcess::readyRead, process_.get(), [this] { output(); });
    process_->start(program, arguments);
    return process_->waitForStarted(5000);
}

QByteArray EngineProcess::output() {
    // Only the end of a long output is kept: that is where a message stands.
    constexpr qsizetype kKept = 64 * 1024;
    if (process_) output_ += process_->readAll();
    if (output_.size() > kKept) output_ = output_.right(kKept);
    return output_;
}

QString EngineProcess::endText() const {
    if (!process_ || running()) return QString();
    if (process_->exitStatus() == QProcess::CrashExit)
        return QStringLiteral("killed by the system");
    return QStringLiteral("exit status ") + QString::number(process_->exitCode());
}

bool EngineProcess::running() const {
    return process_ && process_->state() != QProcess::NotRunning;
}

} // namespace marlith
