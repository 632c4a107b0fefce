#include "BenchProse.h"

#include <QRandomGenerator>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int WordCount = 20'000;

QStringList makeVocabulary()
{
    static const char *const starts[] = {"b", "br", "c", "d",  "f", "g",  "gr", "h",  "l",
                                         "m", "n",  "p", "r",  "s", "t",  "st", "th", "v",
                                         "w", "",   "k", "sh", "j", "cl", "y"};
    static const char *const middles[] = {"a", "e", "i", "o", "u", "ea", "ou", "ai"};
    static const char *const ends[] = {"", "n", "r", "s", "t", "l", "m", "nd", "st", "ck"};
    QRandomGenerator random(1);
    const auto pick = [&random](const auto &parts) {
        return QLatin1String(parts[random.bounded(quint32(std::size(parts)))]);
    };
    QSet<QString> known;
    QStringList words;
    while (words.size() < WordCount) {
        // The words that come most often are the shortest.
        const int syllables = words.size() < 100 ? 1 : 1 + int(random.bounded(3));
        QString word;
        for (int i = 0; i < syllables; ++i)
            word += pick(starts) + pick(middles) + pick(ends);
        if (!known.contains(word)) {
            known.insert(word);
            words.append(word);
        }
    }
    return words;
}

const QStringList &vocabulary()
{
    static const QStringList words = makeVocabulary();
    return words;
}

/** Draws ranks with weights of 1, 1/2, 1/3 and so on. */
class RankSource
{
public:
    RankSource()
    {
        double sum = 0;
        for (int rank = 0; rank < WordCount; ++rank) {
            sum += 1.0 / (rank + 1);
            mSums.push_back(sum);
        }
    }

    [[nodiscard]] int draw(QRandomGenerator *random) const
    {
        const double point = random->generateDouble() * mSums.back();
        const auto found = std::upper_bound(mSums.begin(), mSums.end(), point);
        return std::min(int(found - mSums.begin()), WordCount - 1);
    }

private:
    std::vector<double> mSums;
};

QString sentence(const RankSource &ranks, QRandomGenerator *random)
{
    QString text;
    const int words = 4 + int(random->bounded(18));
    for (int i = 0; i < words; ++i) {
        if (i > 0)
            text += random->bounded(12) == 0 ? u", "_s : u" "_s;
        text += vocabulary().at(ranks.draw(random));
    }
    text[0] = text.at(0).toUpper();
    text += u'.';
    return random->bounded(5) == 0 ? u'\u201c' + text + u'\u201d' : text;
}

} // namespace

QStringList makeBenchProse(int texts, int bytes)
{
    static const RankSource ranks;
    QRandomGenerator random(2);
    QStringList prose;
    prose.reserve(texts);
    for (int i = 0; i < texts; ++i) {
        QString text;
        text.reserve(bytes + 200);
        while (text.size() < bytes) {
            text += sentence(ranks, &random);
            text += random.bounded(6) == 0 ? u'\n' : u' ';
        }
        prose.append(text);
    }
    return prose;
}

QString benchProseWord(int rank)
{
    return vocabulary().at(rank);
}
