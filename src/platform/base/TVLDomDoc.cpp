#include "TVLDomDoc.h"

#include "TVLXmlReading_p.h"

#include <QCoreApplication>
#include <QDomDocument>

struct TVLDomDoc::Private
{
    QDomDocument document;
    QDomElement work;
    QString attribute; ///< What getAttr() reads.
    QString errorString;
    int errorLine = 0;
    int errorColumn = 0;
};

namespace {

QString domText(const char *text)
{
    return QCoreApplication::translate("TVLDomDoc", text);
}

/** Takes note of an entity that nobody declared. Behind a document type that tells of declarations
 * elsewhere a reader would leave it out, and what it stands for would be missing in silence. */
class EntityWatch : public QXmlStreamEntityResolver
{
public:
    QString resolveUndeclaredEntity(const QString &name) override
    {
        mName = name;
        return {};
    }

    [[nodiscard]] const QString &name() const { return mName; }

private:
    QString mName;
};

/** Builds a document of what a reader gives. QDomDocument's own would leave blanks out that alone
 * stand between two words, and take a tree of any depth. */
class DomBuilder
{
public:
    explicit DomBuilder(QXmlStreamReader *xml)
        : mXml(xml)
        , mParent(mDocument)
    {
        // A document type may declare its entities one by another, and is expanded before it can
        // be looked at.
        mXml->setEntityExpansionLimit(0);
        mXml->setNamespaceProcessing(false);
        mXml->setEntityResolver(&mEntities);
    }
    ~DomBuilder() { mXml->setEntityResolver(nullptr); }
    Q_DISABLE_COPY_MOVE(DomBuilder)

    /** What is read before a fault is of no use. */
    [[nodiscard]] QDomDocument build()
    {
        while (tvlHasMore(*mXml)) {
            mXml->readNext();
            if (mEntities.name().isEmpty())
                take();
            else
                mXml->raiseError(domText("Entity '%1' not declared.").arg(mEntities.name()));
        }
        return mDocument;
    }

private:
    void take()
    {
        switch (mXml->tokenType()) {
        case QXmlStreamReader::DTD:
            if (mXml->text().contains(u'['))
                mXml->raiseError(domText("The file has a document type of its own."));
            break;
        case QXmlStreamReader::StartElement:
            startElement();
            break;
        case QXmlStreamReader::EndElement:
            mParent = mParent.parentNode();
            --mDepth;
            break;
        case QXmlStreamReader::Characters:
            addCharacters();
            break;
        default:
            break;
        }
    }

    void startElement()
    {
        if (mDepth >= DeepestXmlElement) {
            mXml->raiseError(domText("The file is nested too deeply."));
            return;
        }
        QDomElement element = mDocument.createElement(mXml->qualifiedName().toString());
        const QXmlStreamAttributes attributes = mXml->attributes();
        for (const QXmlStreamAttribute &attribute : attributes)
            element.setAttribute(attribute.qualifiedName().toString(),
                                 attribute.value().toString());
        mParent.appendChild(element);
        mParent = element;
        ++mDepth;
    }

    void addCharacters()
    {
        if (mDepth == 0)
            return;
        const QString text = mXml->text().toString();
        if (mXml->isCDATA())
            mParent.appendChild(mDocument.createCDATASection(text));
        else
            mParent.appendChild(mDocument.createTextNode(text));
    }

    QXmlStreamReader *mXml;
    EntityWatch mEntities;
    QDomDocument mDocument = QDomDocument(QString()); // Without a name it would be null.
    QDomNode mParent;
    size_t mDepth = 0;
};

/** The first element at a path below a node, in the order of the document; null for none. */
QDomElement elementAt(const QDomNode &parent, const QStringList &path, qsizetype step = 0)
{
    const QString &name = path.at(step);
    for (QDomElement element = parent.firstChildElement(name); !element.isNull();
         element = element.nextSiblingElement(name)) {
        const QDomElement found =
            step + 1 < path.size() ? elementAt(element, path, step + 1) : element;
        if (!found.isNull())
            return found;
    }
    return {};
}

} // namespace

TVLDomDoc::TVLDomDoc()
    : d(std::make_unique<Private>())
{
}

TVLDomDoc::~TVLDomDoc() = default;

bool TVLDomDoc::setContent(QIODevice *device)
{
    QXmlStreamReader xml(device);
    return read(&xml);
}

bool TVLDomDoc::setContent(const QString &text)
{
    QXmlStreamReader xml(text);
    return read(&xml);
}

bool TVLDomDoc::read(QXmlStreamReader *xml)
{
    *d = Private();
    const QDomDocument document = DomBuilder(xml).build();
    if (!xml->hasError()) {
        d->document = document;
        return true;
    }
    d->errorString = xml->errorString();
    d->errorLine = int(xml->lineNumber());
    d->errorColumn = int(xml->columnNumber());
    return false;
}

QString TVLDomDoc::errorString() const
{
    return d->errorString;
}

int TVLDomDoc::errorLine() const
{
    return d->errorLine;
}

int TVLDomDoc::errorColumn() const
{
    return d->errorColumn;
}

bool TVLDomDoc::cd(const QString &path)
{
    const QStringList names = path.split(u'/', Qt::SkipEmptyParts);
    if (names.isEmpty())
        return false;
    const bool isAbsolute = path.startsWith(u'/');
    const QDomElement found = elementAt(isAbsolute ? QDomNode(d->document) : d->work, names);
    if (found.isNull())
        return false;
    d->work = found;
    return true;
}

bool TVLDomDoc::cdNext(const QString &name)
{
    const QDomElement next = d->work.nextSiblingElement(name.section(u'/', -1));
    if (next.isNull())
        return false;
    d->work = next;
    return true;
}

QDomElement TVLDomDoc::currentElement() const
{
    return d->work;
}

void TVLDomDoc::setWorkElement(const QDomElement &element)
{
    d->work = element;
}

QDomElement TVLDomDoc::currentChild() const
{
    return d->work.firstChildElement();
}

bool TVLDomDoc::find(const QString &attribute)
{
    d->attribute = attribute;
    return d->work.hasAttribute(attribute);
}

void TVLDomDoc::getAttr(QString *value, const QString &defaultValue, bool *found) const
{
    *value = d->work.attribute(d->attribute, defaultValue);
    if (found)
        *found = d->work.hasAttribute(d->attribute);
}

bool TVLDomDoc::get(QString *text) const
{
    *text = d->work.text();
    return !d->work.isNull();
}
