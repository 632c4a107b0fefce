#pragma once

#include "Editions.h"
#include "TestProject.h"

#include "TVLUnattendedMessageBoxes.h"

#include <QMap>

using namespace Qt::StringLiterals;

/** Files of a project by their paths in it. */
using ProjectFiles = QMap<QString, QByteArray>;

/** A project of texts in editions, and the ids of its items by their titles. */
struct EditionsProject
{
    ProjectFiles files;
    QMap<QString, int> ids;

    static inline const QStringList Chapters{u"Chapter 1"_s, u"Chapter 2"_s, u"Chapter 3"_s};
    static inline const QStringList Waste{u"Waste 1"_s, u"Waste 2"_s};

    /** Makes one: the first edition of three chapters in the Draft, with notes, synopses, comments
     * and snapshots, of texts in the Trash and of a project note. */
    [[nodiscard]] static EditionsProject make();
    /** Writes its files to another place. */
    void writeTo(const TestProject &place) const;
};

/** The editions that a text may be of: the last that was saved, or one behind it. */
struct EditionRange
{
    int least = FirstEdition;
    int most = FirstEdition;
};

/** A project of that kind which went through a fault, opened again. */
class ReopenedProject
{
public:
    ReopenedProject(const EditionsProject &original, const QString &path);

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    /** What there is to complain of; empty for a project that opens and has lost nothing. */
    [[nodiscard]] QStringList complaints() const { return mComplaints; }
    void complain(const QString &text) { mComplaints.append(text); }

    /** Complains of each text of some items that isn't one of these editions. */
    void expectTexts(const QStringList &titles, const EditionRange &range);
    /** Complains unless the binder is of one of these editions. */
    void expectBinder(const EditionRange &range);
    /** Complains unless the project note is of one of these editions. */
    void expectNote(const EditionRange &range);
    /** Complains of snapshots that aren't there any more, or can't be read. */
    void expectSnapshots();
    /** All of these: what a project has whose chapters nobody put elsewhere. */
    void expectAll(const EditionRange &range);
    /** Complains of what has neither stayed with the chapters nor gone to the first of them. */
    void expectMerged();

    /** The words of an item's file, whether the binder has the item or not. */
    [[nodiscard]] QString words(const QString &title, TVL::DocumentType type);
    /** Whether the item has a snapshot that holds exactly these words. */
    [[nodiscard]] bool hasSnapshot(const QString &title, const QString &words) const;

private:
    [[nodiscard]] int idOf(const QString &title) const { return mOriginal->ids.value(title); }
    [[nodiscard]] QList<QByteArray> comments(const QString &title);
    void expectComment(const QString &title, const EditionRange &range);

    TVLUnattendedMessageBoxes mBoxes;
    const EditionsProject *mOriginal;
    QString mPath;
    TestModel mModel;
    QStringList mComplaints;
};

/** The files of a project that are empty or cut off, by what is to be in them. */
[[nodiscard]] QStringList brokenFiles(const QString &path);
