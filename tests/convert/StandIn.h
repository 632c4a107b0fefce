#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

constexpr int LongLimit = 60'000;
/** Enough milliseconds for a stand-in to do what it does before it hangs. */
constexpr int ShortLimit = 1'000;
/** From the limit until all is killed, on a machine that is busy. */
constexpr int Patience = 20'000;

/** The path of the program that stands in for outside ones; see stand_in.cpp. */
[[nodiscard]] QString standInPath();

/** What stand-ins that are started while it lives record. */
class StandInRecord
{
public:
    /** @p mode is what they do, where no argument says so. */
    explicit StandInRecord(const QByteArray &mode = {});
    ~StandInRecord();
    Q_DISABLE_COPY_MOVE(StandInRecord)

    [[nodiscard]] QStringList lines() const;
    /** The recorded numbers of processes that are still there. */
    [[nodiscard]] QStringList livingProcesses() const;

private:
    QTemporaryDir mFolder;
};

/** Sets an environment variable for as long as it lives. */
class EnvironmentValue
{
public:
    EnvironmentValue(const char *name, const QByteArray &value)
        : mName(name)
    {
        qputenv(name, value);
    }
    ~EnvironmentValue() { qunsetenv(mName); }
    Q_DISABLE_COPY_MOVE(EnvironmentValue)

private:
    const char *mName;
};
