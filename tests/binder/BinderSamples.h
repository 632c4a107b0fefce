#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <functional>

class TVLBinderWriter;
class TVLProjectNode;

/** The uuid of sampleItem(). */
[[nodiscard]] QUuid sampleUuid();
/** When sampleItem() was created. */
[[nodiscard]] QDateTime sampleCreated();
/** When sampleItem() was modified. */
[[nodiscard]] QDateTime sampleModified();

/** The attributes of an item with id 1, sampleUuid() and the two dates. */
[[nodiscard]] QByteArray sampleAttributes(const QByteArray &type = "Text");

/** The XML of an item. */
[[nodiscard]] QByteArray sampleItem(const QByteArray &content,
                                    const QByteArray &attributes = sampleAttributes());

/**
 * A desktop binder with every element and attribute that is written, in exactly the form in which
 * it is written: reading and writing it gives the same bytes.
 */
[[nodiscard]] QByteArray richBinder();

/** The user's data in richBinder(), which the reader leaves to others. */
[[nodiscard]] QString richUserProjectData();

/** What a function of the writer writes, without indentation. */
[[nodiscard]] QByteArray written(const std::function<void(TVLBinderWriter *)> &write);

/** An item as the writer writes it, without indentation. */
[[nodiscard]] QByteArray writtenItem(const TVLProjectNode *node, bool mobile = false);

/** What the writer puts between the tags of an item. */
[[nodiscard]] QByteArray writtenContent(const TVLProjectNode *node, bool mobile = false);

/** Collects the debug output instead of showing it, for as long as it lives. One at a time. */
class DebugLog
{
public:
    DebugLog();
    ~DebugLog();
    Q_DISABLE_COPY_MOVE(DebugLog)

    [[nodiscard]] QStringList lines() const { return mLines; }

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &line);

    static DebugLog *sCurrent;
    QStringList mLines;
    QtMessageHandler mPrevious;
};
