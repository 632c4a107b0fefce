#pragma once

#include "TVLScreenplay_p.h"

#include <QXmlStreamReader>

#include <vector>

/**
 * Reads a file of Final Draft as plain values, without recursion. What has a document type of its
 * own is refused, and with it all entities.
 */
class TVLFinalDraftParser
{
public:
    explicit TVLFinalDraftParser(const QByteArray &bytes);

    /** False for what isn't whole; the screenplay then has what could be read. */
    [[nodiscard]] bool parse();
    [[nodiscard]] const TVLScreenplay &screenplay() const { return mScreenplay; }
    [[nodiscard]] QString errorString() const { return mXml.errorString(); }

private:
    /** What an element of XML is by its name and by what it stands in. */
    enum class Role : quint8 {
        Skipped,
        Script,
        TitlePage,
        Body, ///< Holds paragraphs.
        Dual,
        Paragraph,
        Text,
        SceneProperties,
        Note,
        NoteParagraph,
        NoteText,
    };

    struct Note
    {
        bool mIsInText = false; ///< Whether it is a stretch of the text and no comment.
        bool mIsFootnote = false;
        bool mHasPlace = false; ///< Whether the range counts text that is apart from the rest.
        quint8 mStyle = TVLScreenplayRun::Note;
        int mStart = 0;
        int mEnd = 0;
        TVLScreenplayParagraph mText;
        bool mHasLines = false;
    };

    struct OpenParagraph
    {
        TVLScreenplayParagraph mParagraph;
        std::vector<Note> mNotes;
        std::vector<TVLScreenplayParagraph> mSynopses; ///< Told within it.
        QString mKey; ///< Of an entry of a title page.
        bool mIsDone = false; ///< Whether it has been added or is nothing but a frame.
    };

    [[nodiscard]] Role roleOf(QStringView name) const;
    [[nodiscard]] Role roleInParagraph(QStringView name) const;
    void startElement();
    void endElement();
    void addCharacters(QStringView characters);

    void beginParagraph();
    void endParagraph();
    void beginText();
    void beginNote();
    void endDual();
    /** Adds the innermost paragraph as far as it goes, before what stands in it. */
    void closeOuterParagraph();
    void add(OpenParagraph *open);
    void addNotes(OpenParagraph *open);
    [[nodiscard]] TVLScreenplayLook lookOf(const QXmlStreamAttributes &attributes) const;

    QByteArray mBytes;
    QXmlStreamReader mXml;
    TVLScreenplay mScreenplay;
    std::vector<TVLScreenplayParagraph> mTitlePage;
    std::vector<Role> mRoles; ///< Of the elements around the place.
    std::vector<OpenParagraph> mOpen;
    std::vector<size_t> mDuals; ///< Where those around the place begin.
    Note mNote;
    quint8 mStyles = TVLScreenplayRun::Plain;
    int mLook = TVLScreenplayRun::NoLook;
    bool mIsInTitlePage = false;
};
