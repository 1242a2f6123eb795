#include "NewestFirst.h"

#include "Collation.h"

#include <algorithm>
#include <vector>

namespace {

/// Stable-sorts by the names' keys, each computed once.
template <typename Iterator, typename Name>
void sortByKey(Iterator begin, Iterator end, const Name &name) {
    using Item = typename std::iterator_traits<Iterator>::value_type;
    struct Keyed {
        QByteArray key;
        Item item;
    };
    const Collation collation;
    std::vector<Keyed> keyed;
    keyed.reserve(size_t(end - begin));
    for (auto at = begin; at != end; ++at) {
        QByteArray key = collation.sortKey(name(*at));
        keyed.push_back({std::move(key), std::move(*at)});
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const Keyed &a, const Keyed &b) { return a.key < b.key; });
    std::transform(std::make_move_iterator(keyed.begin()), std::make_move_iterator(keyed.end()), begin,
                   [](Keyed &&each) { return std::move(each.item); });
}

} // namespace

void sortNewestFirst(QList<MediaFile> &files) {
    const auto newer = [](const MediaFile &a, const MediaFile &b) { return a.addedAt > b.addedAt; };
    if (!std::is_sorted(files.cbegin(), files.cend(), newer)) {
        std::stable_sort(files.begin(), files.end(), newer);
    }
    // Names only decide between equal dates, which are rare, while their keys are dear.
    for (auto begin = files.begin(); begin != files.end();) {
        const auto end = std::find_if(begin + 1, files.end(),
                                      [&](const MediaFile &file) { return file.addedAt != begin->addedAt; });
        if (end - begin > 1) {
            sortByKey(begin, end, [](const MediaFile &file) { return file.url.lastPathComponent(); });
        }
        begin = end;
    }
}

void sortByName(QList<FolderCard> &cards) {
    sortByKey(cards.begin(), cards.end(), [](const FolderCard &card) { return card.name; });
}
