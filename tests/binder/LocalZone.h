#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <ctime>

/** The zone that counts as local, for as long as it lives. */
class LocalZone
{
public:
    explicit LocalZone(const QByteArray &zone)
        : mPrevious(qgetenv("TZ"))
        , mWasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", zone);
        tzset();
    }
    ~LocalZone()
    {
        if (mWasSet)
            qputenv("TZ", mPrevious);
        else
            qunsetenv("TZ");
        tzset();
    }
    Q_DISABLE_COPY_MOVE(LocalZone)

private:
    const QByteArray mPrevious;
    const bool mWasSet;
};
