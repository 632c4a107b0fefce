#pragma once

#include <QIODevice>

#include <algorithm>
#include <cstring>

/** A file of which only the beginning can be read: behind it each reading fails, as on a bad disk.
 */
class FailingDevice : public QIODevice
{
public:
    FailingDevice(const QByteArray &content, qint64 readable)
        : mContent(content)
        , mReadable(readable)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] qint64 size() const override { return mContent.size(); }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 left = mReadable - pos();
        if (left <= 0) {
            setErrorString(QStringLiteral("Input/output error"));
            return -1;
        }
        const qint64 count = std::min(size, left);
        std::memcpy(data, mContent.constData() + pos(), std::size_t(count));
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray mContent;
    qint64 mReadable;
};
