#include "FuzzSupport.h"

#include "TVLProjectFolderFormat.h"
#include "TVLSearchIndex.h"
#include "TestSearchedProject.h"

#include <QSqlQuery>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

constexpr int Items = 10;

/** All texts of a store. */
QByteArray textsOf(const TVLSearchIndex &index)
{
    QSqlQuery query(index);
    if (!query.exec(u"SELECT identity, type, propertyValue FROM DocumentSearchProperties "
                    "ORDER BY identity, type"_s))
        tvlReportFinding("the store has lost its texts");
    QByteArray texts;
    while (query.next())
        texts += query.value(0).toByteArray() + ' ' + query.value(1).toByteArray() + ' '
            + query.value(2).toString().toUtf8() + '\n';
    return texts;
}

void addItems(const TestSearchedProject &project, TVLSearchIndex *index)
{
    for (const TVLProjectNode *node : project.nodes()) {
        if (!index->addProjectNode(node))
            tvlReportFinding("an item can't be added");
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/**
 * The input is a project's file of search indexes. What can't be read changes nothing; what was
 * read, once written, reads back and is written the same.
 */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static TestSearchedProject &project = *[] {
        auto *made = new TestSearchedProject;
        for (int id = 0; id < Items; ++id)
            made->addNode(id, u"Title"_s);
        return made;
    }();
    project.writeIndex(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));

    TVLSearchIndex index(&project);
    addItems(project, &index);
    const QByteArray untouched = textsOf(index);
    QString error;
    if (!index.load(&error)) {
        if (error.isEmpty())
            tvlReportFinding("a file can't be read and nobody says why");
        if (textsOf(index) != untouched)
            tvlReportFinding("a part of a file that can't be read was taken over");
        return 0;
    }
    index.save();
    const QByteArray file = project.readIndex();
    const QByteArray texts = textsOf(index);

    TVLSearchIndex again(&project);
    addItems(project, &again);
    if (!again.load(&error))
        tvlReportDifference("a file that was written can't be read", file, error.toUtf8());
    if (textsOf(again) != texts)
        tvlReportDifference("texts read back differently", texts, textsOf(again));
    again.save();
    if (project.readIndex() != file)
        tvlReportDifference("a file that was read is written differently", file,
                            project.readIndex());
    return 0;
}
