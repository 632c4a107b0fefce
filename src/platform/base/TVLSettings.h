#pragma once

#include "TvlExport.h"

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QFont>
#include <QList>
#include <QSettings>
#include <QStringList>
#include <QTextBlockFormat>
#include <QTextCharFormat>

/**
 * Settings in an ini file, asked by number.
 *
 * A derived class says which numbers it knows: keyText() gives the key under which a setting is
 * stored and defaultValue() what it is when nothing is stored. A setting without a key is never
 * stored and reads as its default. So does one whose stored value is of another kind: a file that
 * was edited by hand breaks nothing. Keys that have no number are reached as in any QSettings.
 *
 * The numbers are shared with the application and never change; those that aren't named here are
 * the application's own.
 *
 * Changes are in memory at once and in the file when the event loop comes round, on sync() and with
 * the object's end. Objects on the same file see each other's changes. Before the first change of a
 * file that can't be read whole, it is copied to its name with `.damaged` behind it, or when there
 * is another such copy, `.damaged-2` and so on. As long as that fails, no change is taken. Setting
 * what is stored already and removing what isn't change nothing.
 *
 * At a path where there is no ordinary file but a pipe, a socket or a device, all is in memory.
 */
class TVL_EXPORT TVLSettings : public QSettings
{
    Q_OBJECT

public:
    /** Settings that are on or off. */
    enum FlagSetting : int {
        AddFrontMatter = 88, ///< A compiled book starts with the front matter.
        ShowLabelMark = 89, ///< Index cards show the label's colour.
        ShowStatusStamp = 90, ///< Index cards show the status across them.
        ShowKeywordColors = 91, ///< Index cards show the colours of their keywords.
        TintIndexCards = 92, ///< Index cards have the label's colour.
        TintBinderItems = 93, ///< Rows of the binder have the label's colour.
        TintBinderIcons = 94, ///< Icons of the binder have the label's colour.
        TintOutlinerItems = 95, ///< Rows of the outliner have the label's colour.
        SmallCardFont = 96, ///< Index cards have a smaller font.
        SizeCardsToEditor = 97, ///< Index cards are as large as the editor allows.
        CountIncluded = 98, ///< Statistics count what is in the compiled book.
        CountExcluded = 99, ///< Statistics count what isn't.
        CountAnnotations = 100, ///< Statistics count annotations.
        CountFootnotes = 101, ///< Statistics count footnotes.
        CountSubDocuments = 102, ///< Statistics count what lies below the selected items.
        FirstTypewriterScrolling = 103, ///< The first editor keeps the line in its middle.
        SecondTypewriterScrolling = 104, ///< The second editor does.
        FullScreenTypewriterScrolling = 105, ///< The full screen does.
        LayoutKeepsViews = 106, ///< A layout keeps corkboard and outliner.
        LayoutKeepsMetaData = 107, ///< A layout keeps how meta-data looks.
        GhostNotes = 108, ///< Notes in the text are faded.
        ShowInvisibles = 109, ///< Editors show blanks and ends of paragraphs.
        ExcludeFromBackups = 110, ///< Of older projects; the binder has it now.
    };
    Q_ENUM(FlagSetting)

    /** Settings that are whole numbers. */
    enum IntSetting : int {
        ProjectInspectorMode = 15, ///< Page of the inspector.
        InspectorProjectNote = 16, ///< Project note that the inspector shows; -1 for none.
        FrontMatterItem = 34, ///< Item that holds the front matter; -1 for none.
        CompileFormat = 35, ///< Format of a compiled book.
        CardSpacing = 36, ///< Space between index cards.
        CardRatio = 37, ///< Proportions of an index card.
        CardSize = 38, ///< Width of an index card.
        KeywordChips = 39, ///< How many keywords an index card shows.
        CardsAcross = 40, ///< Index cards in a row; 0 for as many as there is room for.
        PageCountType = 41, ///< What the number of pages is counted by.
        PageCountTarget = 42, ///< Words on a page.
        FirstEditorZoom = 43, ///< Zoom step of the first editor.
        SecondEditorZoom = 44, ///< Zoom step of the second editor.
        FullScreenZoom = 45, ///< Zoom step of the full screen.
        LockedEditorPane = 46, ///< Editor that the binder doesn't change.
        FirstEditorMode = 47, ///< View of a single item in the first editor.
        SecondEditorMode = 48, ///< View of a single item in the second editor.
        GroupMode = 49, ///< View of several items in the first editor.
        SecondGroupMode = 50, ///< View of several items in the second editor.
    };
    Q_ENUM(IntSetting)

    /** Settings that are numbers with a fraction. */
    enum RealSetting : int {};
    Q_ENUM(RealSetting)

    /** Settings that are texts. */
    enum StringSetting : int {
        CompileContentRoot = 48, ///< Item whose sub-items are compiled; "-1" for none.
    };
    Q_ENUM(StringSetting)

    /** Settings that are lists of texts. */
    enum StringListSetting : int {
        AutoCorrectionWords = 0, ///< The project's own words for automatic correction.
    };
    Q_ENUM(StringListSetting)

    /** Settings that are colours. */
    enum ColorSetting : int {};
    Q_ENUM(ColorSetting)

    /** Settings that are points in time. */
    enum DateTimeSetting : int {};
    Q_ENUM(DateTimeSetting)

    /** Settings that are fonts. */
    enum FontSetting : int {};
    Q_ENUM(FontSetting)

    /** Settings that are lists of whole numbers. */
    enum IntListSetting : int {
        FirstEditorSource = 0, ///< What the first editor shows.
        SecondEditorSource = 1, ///< What the second editor shows.
        ExpandedBinderItems = 2, ///< Items that are open in the binder.
        FirstOutlinerExpandedItems = 3, ///< Items that are open in the first outliner.
        SecondOutlinerExpandedItems = 4, ///< Items that are open in the second outliner.
        FirstOutlinerColumnWidths = 5, ///< Widths of the first outliner's visible columns.
        SecondOutlinerColumnWidths = 6, ///< Widths of the second outliner's visible columns.
        FirstOutlinerVisibleColumns = 7, ///< The first outliner's columns, in their order.
        SecondOutlinerVisibleColumns = 8, ///< The second outliner's columns, in their order.
    };
    Q_ENUM(IntListSetting)

    /** Settings that are bytes. */
    enum ByteArraySetting : int {
        ProjectReplacements = 0, ///< The project's own replacements for compiling.
        FreeformPositions = 1, ///< Where index cards lie on freeform corkboards.
    };
    Q_ENUM(ByteArraySetting)

    /** Settings that are formats of characters. */
    enum TextCharFormatSetting : int {};
    Q_ENUM(TextCharFormatSetting)

    /** Settings that are formats of paragraphs. */
    enum TextBlockFormatSetting : int {};
    Q_ENUM(TextBlockFormatSetting)

    /** @p path is the ini file; neither it nor its folder need exist. */
    explicit TVLSettings(const QString &path, QObject *parent = nullptr);
    ~TVLSettings() override;
    Q_DISABLE_COPY_MOVE(TVLSettings)

    /** @name What a setting is when nothing is stored; here false, 0 or empty @{ */
    [[nodiscard]] virtual bool defaultValue(FlagSetting setting) const;
    [[nodiscard]] virtual int defaultValue(IntSetting setting) const;
    [[nodiscard]] virtual double defaultValue(RealSetting setting) const;
    [[nodiscard]] virtual QString defaultValue(StringSetting setting) const;
    [[nodiscard]] virtual QStringList defaultValue(StringListSetting setting) const;
    [[nodiscard]] virtual QColor defaultValue(ColorSetting setting) const;
    [[nodiscard]] virtual QDateTime defaultValue(DateTimeSetting setting) const;
    [[nodiscard]] virtual QFont defaultValue(FontSetting setting) const;
    [[nodiscard]] virtual QList<int> defaultValue(IntListSetting setting) const;
    [[nodiscard]] virtual QByteArray defaultValue(ByteArraySetting setting) const;
    [[nodiscard]] virtual QTextCharFormat defaultValue(TextCharFormatSetting setting) const;
    [[nodiscard]] virtual QTextBlockFormat defaultValue(TextBlockFormatSetting setting) const;
    /** @} */

    /** @name The key of a setting in the ini file; here empty, for one that isn't known @{ */
    [[nodiscard]] virtual QString keyText(FlagSetting setting) const;
    [[nodiscard]] virtual QString keyText(IntSetting setting) const;
    [[nodiscard]] virtual QString keyText(RealSetting setting) const;
    [[nodiscard]] virtual QString keyText(StringSetting setting) const;
    [[nodiscard]] virtual QString keyText(StringListSetting setting) const;
    [[nodiscard]] virtual QString keyText(ColorSetting setting) const;
    [[nodiscard]] virtual QString keyText(DateTimeSetting setting) const;
    [[nodiscard]] virtual QString keyText(FontSetting setting) const;
    [[nodiscard]] virtual QString keyText(IntListSetting setting) const;
    [[nodiscard]] virtual QString keyText(ByteArraySetting setting) const;
    [[nodiscard]] virtual QString keyText(TextCharFormatSetting setting) const;
    [[nodiscard]] virtual QString keyText(TextBlockFormatSetting setting) const;
    /** @} */

    /** @name The stored value, or the default when there is none of that kind @{ */
    using QSettings::value;
    [[nodiscard]] bool value(FlagSetting setting) const;
    [[nodiscard]] int value(IntSetting setting) const;
    [[nodiscard]] double value(RealSetting setting) const;
    [[nodiscard]] QString value(StringSetting setting) const;
    [[nodiscard]] QStringList value(StringListSetting setting) const;
    [[nodiscard]] QColor value(ColorSetting setting) const;
    [[nodiscard]] QDateTime value(DateTimeSetting setting) const;
    [[nodiscard]] QFont value(FontSetting setting) const;
    [[nodiscard]] QList<int> value(IntListSetting setting) const;
    [[nodiscard]] QByteArray value(ByteArraySetting setting) const;
    [[nodiscard]] QTextCharFormat value(TextCharFormatSetting setting) const;
    [[nodiscard]] QTextBlockFormat value(TextBlockFormatSetting setting) const;
    /** @} */

    /** @name Storing, also of a value that is the default @{ */
    void setValue(FlagSetting setting, bool value);
    void setValue(IntSetting setting, int value);
    /** What isn't finite is stored, but reads as the default. */
    void setValue(RealSetting setting, double value);
    void setValue(StringSetting setting, const QString &value);
    void setValue(StringListSetting setting, const QStringList &value);
    void setValue(ColorSetting setting, const QColor &value);
    void setValue(DateTimeSetting setting, const QDateTime &value);
    void setValue(FontSetting setting, const QFont &value);
    void setValue(IntListSetting setting, const QList<int> &value);
    void setValue(ByteArraySetting setting, const QByteArray &value);
    void setValue(TextCharFormatSetting setting, const QTextCharFormat &value);
    void setValue(TextBlockFormatSetting setting, const QTextBlockFormat &value);
    /** Nothing is stored under an empty key. */
    void setValue(const QString &key, const QVariant &value);
    /** @} */

    /** Whether something of any kind is stored under a key; false for an empty one. */
    [[nodiscard]] bool contains(const QString &key) const;
    /** Removes a key and all below it. An empty key, unlike with QSettings, removes nothing. */
    void remove(const QString &key);
    /** Removes everything. */
    void clear();

    /**
     * Makes the ini file at @p path hold what this object holds and nothing else. False when it
     * can't be written.
     */
    [[nodiscard]] bool saveToFile(const QString &path) const;

    /** Writes what is unwritten and reads what others have written. */
    void sync();

protected:
    bool event(QEvent *event) override;

private:
    /** Whether there is anything under a key. */
    [[nodiscard]] bool holds(const QString &key);
    /** Whether nothing of the file is lost by writing it. Asked before the first change. */
    [[nodiscard]] bool mayWrite();

    bool mIsSafeToWrite = false;
};
