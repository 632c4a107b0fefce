#pragma once

#include <QStringList>
#include <QtGlobal>

/** Takes what is logged, at whatever level, as long as it lives. There is one at a time. */
class LogTaker
{
public:
    LogTaker();
    ~LogTaker();
    Q_DISABLE_COPY_MOVE(LogTaker)

    [[nodiscard]] QStringList lines() const;

private:
    QtMessageHandler mBefore;
};
