#include "FuzzSupport.h"

#include "TVLBrumbleOpmlParser.h"
#include "TVLOpmlReader.h"
#include "TVLProjectModel.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QEvent>

using namespace Qt::StringLiterals;

namespace {

/** A project in memory that has nothing. One for all inputs, as making one takes longer than
 * reading most of them. */
class EmptyProject
{
public:
    ~EmptyProject()
    {
        while (!isEmpty())
            model()->removeIndexFromModel(model()->index(0, 0));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    [[nodiscard]] static TVLProjectModel *model()
    {
        static TVLProjectModel model(u"/nowhere/Novel.tavel"_s, nullptr, false,
                                     TVL::FormatVersion18);
        return &model;
    }
    [[nodiscard]] bool isEmpty() const { return model()->rowCount() == 0; }

    /** A line for each item, indented by what it lies in. */
    [[nodiscard]] QByteArray titles(const QModelIndex &parent = {}, int depth = 0) const
    {
        QByteArray lines;
        for (int row = 0; row < model()->rowCount(parent); ++row) {
            const QModelIndex index = model()->index(row, 0, parent);
            lines += QByteArray(depth, ' ') + model()->title(index).toUtf8() + '\n'
                + titles(index, depth + 1);
        }
        return lines;
    }
};

/** The same of the elements of a name, by their attribute. */
QByteArray titlesOf(const QDomElement &parent, const QString &name, const QString &attribute,
                    int depth)
{
    QByteArray lines;
    for (QDomElement element = parent.firstChildElement(name); !element.isNull();
         element = element.nextSiblingElement(name)) {
        const QString title = element.attribute(attribute);
        lines += QByteArray(depth, ' ')
            + (title.isEmpty() ? TVLProjectModel::trUntitledTitle() : title).toUtf8() + '\n'
            + titlesOf(element, name, attribute, depth + 1);
    }
    return lines;
}

QByteArray titlesOfOutline(const QDomElement &root)
{
    const QString name = u"outline"_s;
    QDomElement body = root.firstChildElement(u"body"_s);
    while (!body.isNull() && body.firstChildElement(name).isNull())
        body = body.nextSiblingElement(u"body"_s);
    return titlesOf(body, name, u"text"_s, 0);
}

QByteArray titlesOfMap(const QDomElement &map)
{
    const QString name = u"node"_s;
    const QString attribute = u"TEXT"_s;
    const QString title = map.firstChildElement(name).attribute(attribute);
    QByteArray lines =
        (title.isEmpty() ? TVLProjectModel::trUntitledTitle() : title).toUtf8() + '\n';
    QDomElement node = map.firstChildElement(name);
    while (!node.isNull() && node.firstChildElement(name).isNull())
        node = node.nextSiblingElement(name);
    return lines + titlesOf(node, name, attribute, 1);
}

/** What a file that could be read gives is what a document of the whole file says. */
void checkOutline(const QByteArray &input)
{
    const EmptyProject project;
    TVLOpmlReader reader(EmptyProject::model());
    const QString path =
        tvlInputAsFile(reinterpret_cast<const uint8_t *>(input.constData()), size_t(input.size()));
    if (!reader.read(path, TVL::OpmlNoteAsText, false, QModelIndex(), -1)) {
        if (!project.isEmpty())
            tvlReportFinding("a part of a file that can't be read was taken over");
        if (reader.errorString().isEmpty())
            tvlReportFinding("a file can't be read and nobody says why");
        return;
    }
    QDomDocument document;
    if (!document.setContent(input))
        tvlReportFinding("a file that isn't well-formed was read");
    const QDomElement root = document.documentElement();
    const QByteArray expected =
        reader.fileKind() == TVLOpmlReader::OpmlFile ? titlesOfOutline(root) : titlesOfMap(root);
    if (project.titles() != expected)
        tvlReportDifference("items are missing or elsewhere", expected, project.titles());
}

void checkNoteBoard(const QByteArray &input)
{
    const EmptyProject project;
    TVLBrumbleOpmlParser parser(EmptyProject::model());
    if (!parser.parse(QString::fromUtf8(input), -1, QModelIndex()) && !project.isEmpty())
        tvlReportFinding("a part of a note-board that can't be read was taken over");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    tvlInitFuzzing();
    return 0;
}

/** The input is an outline, a mind map or a note-board. */
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    checkOutline(input);
    checkNoteBoard(input);
    return 0;
}
