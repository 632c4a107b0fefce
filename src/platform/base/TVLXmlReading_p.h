#pragma once

#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

/** How deep elements may lie in a file of another program: what goes through a tree of them calls
 * itself for each. */
constexpr size_t DeepestXmlElement = 500;

/**
 * Whether there may be more to read. QXmlStreamReader::atEnd() alone doesn't tell: of a device that
 * fails before its end it says false for ever.
 */
[[nodiscard]] inline bool tvlHasMore(const QXmlStreamReader &reader)
{
    return !reader.hasError() && !reader.atEnd();
}

/** Lets entities pass that nobody declared; they stand for nothing. For text that is kept as it
 * stands and not for what it says. */
class TVLUndeclaredEntities : public QXmlStreamEntityResolver
{
public:
    QString resolveUndeclaredEntity(const QString & /*name*/) override { return u""_s; }
};

/** Reads what is left, so that the reader has met every fault that there is. */
inline void tvlReadToEnd(QXmlStreamReader *reader)
{
    while (tvlHasMore(*reader))
        reader->readNext();
}
