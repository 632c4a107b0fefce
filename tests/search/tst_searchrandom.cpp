#include "ReferenceMatch.h"
#include "TVLCollectionMetaData.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QRandomGenerator>
#include <QTest>

#include <memory>

namespace {

constexpr int Projects = 400;
constexpr int SearchesOfAProject = 20;

// Words that are parts of each other, with marks around them and other cases.
const QStringList Vocabulary = {
    u"art"_qs,         u"cart"_qs, u"Art"_qs,           u"artist"_qs,        u"red"_qs,
    u"Tired"_qs,       u"it's"_qs, u"it\u2019s"_qs,     u"\"so\""_qs,        u"\u201cso\u201d"_qs,
    u"a.c"_qs,         u"abc"_qs,  u"\u00e9t\u00e9"_qs, u"\u00c9T\u00c9"_qs, u"2"_qs,
    u"b2b"_qs,         u"(x)"_qs,  u"dark blue"_qs,     u"\u6f22\u5b57"_qs,  u"\U0001d11e"_qs,
    u"stra\u00dfe"_qs,
};

const QStringList Separators = {u" "_qs, u", "_qs, u","_qs,     u"\n"_qs,
                                u"-"_qs, u""_qs,   u"\u00a0"_qs};

const QStringList Expressions = {
    u"a.c"_qs,        u"^art"_qs, u"art$"_qs, u"\\bart\\b"_qs, u"[a-c]+2"_qs,
    u"(red|it's)"_qs, u"("_qs,    u"\\d"_qs,  u"t.*d"_qs,      u""_qs};

/** The flags and words of a search as they are told of, without any help from the library. */
struct Plan
{
    QStringList words;
    int flags = 0;
};

QStringList splitAtBlanks(const QString &text)
{
    QStringList words;
    QString word;
    for (const QChar ch : text + u' ') {
        if (!ch.isSpace()) {
            word += ch;
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    return words;
}

Plan planOf(const TVLCollectionMetaData &search)
{
    const QString &text = search.mSearchText;
    const int cs = search.mCaseSensitivity == Qt::CaseSensitive ? 2 : 0;
    const bool hasCommas = text.contains(u", "_qs);
    const QStringList several =
        hasCommas ? text.split(u", "_qs, Qt::SkipEmptyParts) : splitAtBlanks(text);
    switch (int(search.mSearchOperator)) {
    case 0:
        return {{text}, cs | 16};
    case 1:
        return {several, cs | 32};
    case 2:
        return {several, cs};
    case 3:
        return {splitAtBlanks(text), cs | 12};
    case 4:
        return {{text}, cs | 64};
    }
    return {};
}

} // namespace

/** Searches random projects and walks through all their texts instead. */
class TstSearchRandom : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void searchesAgreeWithAWalkThroughAllTexts_data();
    void searchesAgreeWithAWalkThroughAllTexts();

private:
    [[nodiscard]] int random(int bound) { return int(mRandom.bounded(quint32(bound))); }
    [[nodiscard]] QString randomText(int mostWords);
    [[nodiscard]] TVLCollectionMetaData randomSearch();
    void makeProject();
    void changeProject();
    [[nodiscard]] QSet<int> walk(const TVLCollectionMetaData &search) const;
    [[nodiscard]] QSet<int> walkTexts(const Plan &plan, int property) const;
    [[nodiscard]] QSet<int> walkNumbers(const Plan &plan, int property) const;
    [[nodiscard]] bool hasTitle(const TVLProjectNode *node, int type, const QString &word,
                                int flags) const;

    QRandomGenerator mRandom;
    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
    QMap<int, QString> mTitles[3]; ///< Of keywords, labels and status items, by id.
};

QString TstSearchRandom::randomText(int mostWords)
{
    QString text;
    const int words = random(mostWords + 1);
    for (int i = 0; i < words; ++i) {
        text += Vocabulary.at(random(int(Vocabulary.size())));
        text += Separators.at(random(int(Separators.size())));
    }
    return text;
}

TVLCollectionMetaData TstSearchRandom::randomSearch()
{
    TVLCollectionMetaData search;
    search.mSearchOperator = TVL::SearchOperator(random(6));
    search.mSearchProperty = TVL::DocumentProperty(random(10));
    search.mCaseSensitivity = random(2) ? Qt::CaseSensitive : Qt::CaseInsensitive;
    search.mSearchText = search.mSearchOperator == TVL::RegExpOperator
        ? Expressions.at(random(int(Expressions.size())))
        : randomText(3);
    if (random(2))
        search.mSearchText = search.mSearchText.trimmed();
    return search;
}

void TstSearchRandom::makeProject()
{
    mIndex.reset();
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
    for (QMap<int, QString> &titles : mTitles) {
        titles.clear();
        for (int id = 0; id < 4; ++id)
            titles.insert(id, randomText(2));
    }
    for (int id = 0; id < 4; ++id) {
        QVERIFY(mIndex->addKeyword(id, mTitles[0].value(id)));
        QVERIFY(mIndex->addLabel(id, mTitles[1].value(id), QColor()));
        QVERIFY(mIndex->addStatusItem(id, mTitles[2].value(id)));
    }
    for (int id = 0; id < 12; ++id) {
        TVLProjectNode *node = mProject->addNode(id, randomText(3));
        node->mLabelId = random(6) - 1;
        node->mStatusId = random(6) - 1;
        while (random(2) && node->mKeywords.size() < 4)
            node->mKeywords.append(random(5));
        for (const int property : {2, 3, 4, 8, 9})
            mProject->setText(id, TVL::DocumentProperty(property), randomText(6));
        QVERIFY(mIndex->addProjectNode(node));
    }
}

/** A change as the program makes it: some are told with the value, some only as having happened. */
void TstSearchRandom::changeProject()
{
    TVLProjectNode *node = mProject->nodes().at(random(int(mProject->nodes().size())));
    const int properties[] = {1, 2, 3, 4, 6, 7, 8, 9};
    const auto property = TVL::DocumentProperty(properties[random(8)]);
    if (property == TVL::LabelProperty || property == TVL::StatusProperty) {
        const int value = random(5);
        (property == TVL::LabelProperty ? node->mLabelId : node->mStatusId) = value;
        mIndex->updatePropertyNode(node, property, value, true);
        return;
    }
    mProject->setText(node->mId, property, randomText(6));
    if (property == TVL::TitleProperty || random(2))
        mIndex->updatePropertyNode(node, property, mProject->text(node->mId, property), true);
    else
        mIndex->invalidatePropertyNode(node, property);
}

QSet<int> TstSearchRandom::walkTexts(const Plan &plan, int property) const
{
    QSet<int> ids;
    for (const TVLProjectNode *node : mProject->nodes()) {
        for (const int type : {1, 2, 3, 4, 8, 9}) {
            if ((property == 0 || property == type)
                && referenceMatch(mProject->text(node->mId, TVL::DocumentProperty(type)),
                                  plan.flags, plan.words))
                ids.insert(node->mId);
        }
    }
    return ids;
}

bool TstSearchRandom::hasTitle(const TVLProjectNode *node, int type, const QString &word,
                               int flags) const
{
    const QList<int> values =
        type == 5 ? node->mKeywords : QList<int>{type == 6 ? node->mLabelId : node->mStatusId};
    for (const int value : values) {
        const QMap<int, QString> &titles = mTitles[type - 5];
        if (titles.contains(value) && referenceMatch(titles.value(value), flags, {word}))
            return true;
    }
    return false;
}

QSet<int> TstSearchRandom::walkNumbers(const Plan &plan, int property) const
{
    QSet<int> ids;
    for (const TVLProjectNode *node : mProject->nodes()) {
        int matched = 0;
        for (const QString &word : plan.words) {
            bool isMatched = false;
            for (const int type : {5, 6, 7})
                isMatched = isMatched
                    || ((property == 0 || property == type)
                        && hasTitle(node, type, word, (plan.flags & 2) | 12));
            matched += isMatched ? 1 : 0;
        }
        if (matched > 0 && (matched == plan.words.size() || !(plan.flags & 32)))
            ids.insert(node->mId);
    }
    return ids;
}

QSet<int> TstSearchRandom::walk(const TVLCollectionMetaData &search) const
{
    const Plan plan = planOf(search);
    const int property = search.mSearchProperty;
    if (plan.words.isEmpty())
        return {};
    const bool isNumber = property >= 5 && property <= 7;
    QSet<int> ids;
    if (!isNumber)
        ids.unite(walkTexts(plan, property));
    if (isNumber || property == 0)
        ids.unite(walkNumbers(plan, property));
    return ids;
}

void TstSearchRandom::searchesAgreeWithAWalkThroughAllTexts_data()
{
    QTest::addColumn<int>("seed");
    for (int seed = 0; seed < 10; ++seed)
        QTest::addRow("%d", seed) << seed;
}

void TstSearchRandom::searchesAgreeWithAWalkThroughAllTexts()
{
    QFETCH(int, seed);
    mRandom.seed(quint32(seed));
    int findings = 0;
    for (int i = 0; i < Projects / 10; ++i) {
        makeProject();
        for (int j = 0; j < SearchesOfAProject; ++j) {
            const TVLCollectionMetaData search = randomSearch();
            const QList<int> ids = mIndex->indexes(search);
            const QSet<int> found(ids.begin(), ids.end());
            QCOMPARE(ids.size(), found.size());
            if (found != walk(search))
                qWarning() << search.mSearchText << int(search.mSearchOperator)
                           << int(search.mSearchProperty) << int(search.mCaseSensitivity);
            QCOMPARE(found, walk(search));
            findings += int(found.size());
            changeProject();
        }
    }
    // The searches are worth something.
    QVERIFY2(findings > 500, qPrintable(QString::number(findings)));
}

TVL_TEST_MAIN(TstSearchRandom)
#include "tst_searchrandom.moc"
