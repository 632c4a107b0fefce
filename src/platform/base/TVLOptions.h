#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QFont>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <memory>

class QSettings;

/**
 * The application's options, kept in an ini file.
 *
 * Options that the library itself reads have a number, a key and a default; their numbers never
 * change. Any other option is reached by its key alone. A key is a path such as
 * `General/AutoSaveSeconds`, and its first part is the group that groupsChanged() announces.
 *
 * A typed option whose stored value is missing or of another kind reads as its default, so that a
 * file edited by hand can't break the application.
 */
class TVL_EXPORT TVLOptions : public QObject
{
    Q_OBJECT

public:
    /** Options that are on or off. */
    enum Flag : int {
        PreviousExitedNormally = 0, ///< The application's last run came to a regular end.
        ImportHtmlAsText = 9, ///< Imported web pages become texts.
        OnlyDisplayableFormats = 10, ///< Files that the application can't show aren't imported.
        RemoveInvalidRtfCharacters = 11, ///< Converters drop characters that RTF can't hold.
        SplitFirstLineOfNotes = 13, ///< A note's first line becomes the title on import.
        TreatTextWithChildrenAsFolder = 22, ///< A text with children counts as a folder.
        DropOnItemsInLists = 28, ///< Flat lists take drops on their items.
    };
    Q_ENUM(Flag)

    /** Options that are whole numbers. */
    enum Int : int {
        AutoSaveSeconds = 1, ///< Idle time after which a project saves itself.
    };
    Q_ENUM(Int)

    /** Options that are fonts. */
    enum Font : int {
        DefaultFont = 6, ///< Font of new texts.
    };
    Q_ENUM(Font)

    /**
     * Holds the announcements of changes back while it lives. When the outermost one ends, all
     * groups that changed are announced in one signal, in the order of their first change.
     */
    class TVL_EXPORT ChangeBatch
    {
    public:
        /** @p options must outlive the batch. */
        explicit ChangeBatch(TVLOptions *options);
        ~ChangeBatch();
        Q_DISABLE_COPY_MOVE(ChangeBatch)

    private:
        TVLOptions *mOptions;
    };

    ~TVLOptions() override;

    [[nodiscard]] bool value(Flag flag) const;
    /** The default also for a stored number that the option can't have. */
    [[nodiscard]] int value(Int number) const;
    [[nodiscard]] QFont value(Font font) const;

    /** Stores a value; announces its group if the option had another value before. */
    void setValue(Flag flag, bool value);
    void setValue(Int number, int value);
    void setValue(Font font, const QFont &value);

    [[nodiscard]] static bool defaultValue(Flag flag);
    [[nodiscard]] static int defaultValue(Int number);
    /** The application's font at the time of the call. */
    [[nodiscard]] static QFont defaultValue(Font font);

    /** The key of an option in the ini file. */
    [[nodiscard]] static QString keyText(Flag flag);
    [[nodiscard]] static QString keyText(Int number);
    [[nodiscard]] static QString keyText(Font font);

    /** The encoding of text files that the user has chosen once for all; empty if none. */
    [[nodiscard]] QByteArray defaultTextEncoding() const;
    /** Announces the group `ImportExport` if it was another one before; empty to be asked again. */
    void setDefaultTextEncoding(const QByteArray &codec);

    /**
     * The value stored under a key, or @p defaultValue when there is none. Simple values come back
     * from the file as texts; QVariant converts them.
     */
    [[nodiscard]] QVariant value(const QString &key, const QVariant &defaultValue = {}) const;

    /** Stores a value under a key; announces its group if there was none or another one before. */
    void setValue(const QString &key, const QVariant &value);

    /** The ini file in use. */
    [[nodiscard]] QString filePath() const;

    /**
     * Goes over to another ini file, or with an empty path to the user's own; what was set until
     * now is written to the old one. Announces the groups of all options and of all keys in either
     * file.
     */
    void setFilePath(const QString &path);

    /**
     * Writes what is unwritten and reads what others have written. False if the file can't be read
     * or written; that lasts until setFilePath().
     */
    bool sync();

Q_SIGNALS:
    /** Options have changed. Each of the groups stands in the list once. */
    void groupsChanged(const QStringList &groups);

private:
    TVLOptions();
    friend TVL_EXPORT TVLOptions *tvlOptions();

    void store(const QString &key, const QVariant &value, bool hasChanged);
    void announce(const QStringList &groups);
    void announcePendingGroups();

    std::unique_ptr<QSettings> mSettings;
    QStringList mPendingGroups;
    int mBatchDepth = 0;
};

/**
 * The options of this application, made on first use. They belong to the library and end with the
 * application object, whose end writes them to their file.
 */
[[nodiscard]] TVL_EXPORT TVLOptions *tvlOptions();
