#pragma once

#include "TVLTextCommentLink.h"

#include <QString>
#include <QTextCharFormat>

#include <optional>

class QTextDocument;
class QUuid;

/**
 * The marks that this application puts on text beside Qt's own formats, as properties of a
 * character or block format, and what can be asked of them.
 */
class TVL_EXPORT TVLTextFormat
{
public:
    /** Property numbers; those of the text's own marks are part of what editors rely on. */
    enum Property : int {
        InternalLink = 0x100003, ///< bool: the anchor leads to an item of the project.
        PresetHighlight = 0x100008, ///< int: highlight 1 to 5 of the options.
        InlineAnnotation = 0x100046, ///< bool: the run is a remark, not part of the text.
        InlineFootnote = 0x100047, ///< bool: the run is a footnote's text.
        InspectorComment = 0x100064, ///< bool: a comment of the inspector hangs on the run.
        InspectorFootnote = 0x100065, ///< bool: a footnote of the inspector hangs on the run.
        CommentIdentity = 0x100068, ///< QString: which comment or footnote of the inspector.
        CommentColor = 0x100069, ///< QColor: its colour; absent for the default one.
        CommentText = 0x10006a, ///< QByteArray: its text as RTF.
        CommentIsCollapsed = 0x10006b, ///< bool: shown folded in the inspector.
        CommentNumber = 0x10006c, ///< int: its number; absent for none.
        DoubleUnderline = 0x100080, ///< bool: the underline is a double one.
        Hidden = 0x100081, ///< bool: the run is hidden text.
        PictureKind = 0x100082, ///< QString: RTF words of a picture that Qt can't show.
        ListStart = 0x100083, ///< int, of lists: the first item's number; absent for 1.
        KeepWithNext = 0x1000a0, ///< bool, of blocks: stays on one page with the next block.
        ScriptElement = 0x1000b0, ///< QString, of blocks: the name of its script element.
        ScriptType = 0x1000b1, ///< QString, of blocks: what it is in a script, if not its element.
        SceneNumber = 0x1000b2, ///< QString, of blocks: the number of the scene that it begins.
        DualDialogue = 0x1000b3, ///< bool, of blocks: its character speaks at the same time as the
                                 ///< one before.
        SectionDepth = 0x1000b4, ///< int, of blocks: the level of a section below the sixth.
    };

    /** Scheme and slashes of a link to an item of the project: `tavellnk://`. */
    [[nodiscard]] static QString internalLinkPrefix();
    /** Scheme and slashes of what ties a run to an inspector comment in files: `tavelcmt://`. */
    [[nodiscard]] static QString commentPrefix();

    /** Whether an address leads to an item of the project, by id or by uuid. */
    [[nodiscard]] static bool isTavelinorLink(const QString &address);
    /** Whether it does so by a uuid. */
    [[nodiscard]] static bool isTavelinorLinkWithUuid(const QString &address);
    /** Whether it does so by an id. */
    [[nodiscard]] static bool isTavelinorLinkWithNodeId(const QString &address);
    /** The id that a link leads to; none when it isn't one by id. */
    [[nodiscard]] static std::optional<int> linkedNodeId(const QString &address);
    /** The uuid that a link leads to; null when it isn't one by uuid. */
    [[nodiscard]] static QUuid linkedNodeUuid(const QString &address);
    /** The address that leads to an item. */
    [[nodiscard]] static QString internalLinkAddress(const QUuid &uuid);
    [[nodiscard]] static QString internalLinkAddress(int id);
    /** Makes a format one of a link to an address; InternalLink is set for one into the project. */
    static void setLink(QTextCharFormat *format, const QString &address);
    /** Takes the link off a format. */
    static void clearLink(QTextCharFormat *format);

    /** Whether an inspector comment or footnote hangs on the run. */
    [[nodiscard]] static bool hasComment(const QTextFormat &format);
    /** The comment or footnote that hangs on the run; one without identity for none. */
    [[nodiscard]] static TVLTextCommentLink comment(const QTextFormat &format);
    /** Hangs a comment or footnote on a format in place of one it has. */
    static void setComment(QTextCharFormat *format, const TVLTextCommentLink &comment);
    /** Takes the comment or footnote off a format. */
    static void clearComment(QTextCharFormat *format);
    /** An identity that no comment has. */
    [[nodiscard]] static QString newCommentIdentity();

    /** The character format of new text by the options. */
    [[nodiscard]] static QTextCharFormat defaultCharFormat();
    /** Makes the default font of the options that of the document. */
    static void setDefaultCharFormat(QTextDocument *document);
};
