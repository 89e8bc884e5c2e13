#include "LibraryTwins.h"

#include <TrelColorLibrary.h>

#include <iterator>
#include <utility>
#include <vector>

using Item = TrelColorLibraryItem;

namespace {

constexpr char EXPLICIT_COLORS[] = "Explicit Colors";
constexpr char PROJECT_SWATCHES[] = "Project Swatches";

QString hexOf(const TrelColor &color)
{
    return color.isValid() ? color.name8() : "invalid";
}

// The library once more, written to be read next to its description and not to be fast: every look-up is a walk,
// and every name is tried against the list of all others.
class PlainLibrary
{
public:
    struct Color
    {
        int type = Item::LIST_ITEM;
        QString name;
        QString uid;
        QString value;
        QString oldPreset;
        QString origin = QString(QChar(u'\0'));
        QString vendor;
        QString hex = "invalid";
        bool canBeModified = false;
    };
    using ColorPtr = std::shared_ptr<Color>;

    struct List
    {
        QString name;
        bool canBeModified = false;
        std::vector<ColorPtr> colors;
        std::vector<std::pair<QString, ColorPtr>> index;
    };
    using ListPtr = std::shared_ptr<List>;

    struct Place
    {
        ListPtr list;
        int row = -1;

        bool isValid() const
        {
            return row >= 0;
        }
        Color *operator->() const
        {
            return list->colors[size_t(row)].get();
        }
    };

    PlainLibrary()
    {
        listNamed(EXPLICIT_COLORS);
        listNamed(PROJECT_SWATCHES)->canBeModified = true;
    }

    ListPtr findList(const QString &name) const
    {
        for (const ListPtr &list : m_lists) {
            if (list->name == name)
                return list;
        }
        return nullptr;
    }

    ListPtr listNamed(const QString &name)
    {
        if (ListPtr list = findList(name))
            return list;
        m_lists.push_back(std::make_shared<List>());
        m_lists.back()->name = name;
        return m_lists.back();
    }

    Place find(QString Color::*field, const QString &text) const
    {
        for (const ListPtr &list : m_lists) {
            for (size_t i = 0; i < list->colors.size(); ++i) {
                if ((*list->colors[i]).*field == text)
                    return {list, int(i)};
            }
        }
        return {};
    }

    static QString unique(const QString &name, const QStringList &names)
    {
        QString candidate = name;
        for (int n = 2; names.contains(candidate); ++n)
            candidate = name + ' ' + QString::number(n);
        return candidate;
    }

    static QStringList namesOf(const List &list)
    {
        QStringList names;
        for (const ColorPtr &color : list.colors)
            names << color->name;
        return names;
    }

    QString newListName(const QString &name) const
    {
        QStringList names;
        for (const ListPtr &list : m_lists)
            names << list->name;
        return unique(name, names);
    }

    // The child that stands for the key; null for none.
    static ColorPtr indexed(const List &list, const QString &key)
    {
        for (const auto &entry : list.index) {
            if (entry.first == key)
                return entry.second;
        }
        return nullptr;
    }

    static Color *append(List &list, int type, const QString &key, const QString &hex)
    {
        const ColorPtr color = std::make_shared<Color>();
        color->type = type;
        (type == Item::UID_COLOR_ITEM ? color->uid : color->value) = key;
        color->hex = hex;
        color->canBeModified = list.canBeModified;
        list.colors.push_back(color);
        for (auto &entry : list.index) {
            if (entry.first == key) {
                entry.second = color;
                return color.get();
            }
        }
        list.index.push_back({key, color});
        return color.get();
    }

    static void setName(Color &color, const QString &name)
    {
        if (name.isEmpty())
            return;
        color.name = name;
        color.origin = "";
        color.vendor = "";
    }

    void createColor(const QString &hex, const QString &uid, const QString &listName, const QString &origin,
                     const QString &vendor)
    {
        const ListPtr list = listNamed(listName);
        const QStringList names = namesOf(*list);
        Color *color = append(*list, Item::UID_COLOR_ITEM, uid, hex);
        setName(*color, unique("Color", names));
        color->origin = origin;
        color->vendor = vendor;
    }

    void createColorWithName(const QString &hex, const QString &name, const QString &uid, const QString &listName,
                             const QString &vendor)
    {
        createColor(hex, uid, listName, "", vendor);
        rename(uid, unique(name, namesOf(*findList(listName))), true);
    }

    QString rename(const QString &uid, const QString &name, bool keepOrigin)
    {
        const Place place = find(&Color::uid, uid);
        if (!place.isValid())
            return "";
        const QString origin = place->origin;
        const QString vendor = place->vendor;
        if (!namesOf(*place.list).contains(name))
            setName(*place.operator->(), name);
        if (keepOrigin) {
            place->origin = origin;
            place->vendor = vendor;
        }
        return name;
    }

    static void removeRow(List &list, int row)
    {
        const ColorPtr color = list.colors[size_t(row)];
        list.colors.erase(list.colors.begin() + row);
        for (size_t i = 0; i < list.index.size(); ++i) {
            if (list.index[i].second == color) {
                list.index.erase(list.index.begin() + int(i));
                return;
            }
        }
    }

    QString get(const QString &text)
    {
        if (!text.startsWith('{')) {
            const ListPtr list = listNamed(EXPLICIT_COLORS);
            const ColorPtr color = indexed(*list, text);
            return color ? color->hex : append(*list, Item::EXPLICIT_COLOR_ITEM, text, text)->hex;
        }
        for (const ListPtr &list : m_lists) {
            if (const ColorPtr color = indexed(*list, text))
                return color->hex;
        }
        return "#ff00ff";
    }

    QString pathOf(const Place &place) const
    {
        return place->name.isEmpty() ? "" : place.list->name + '/' + place->name;
    }

    void createSwatch(const Place &place, const QString &newUid, const QString &listName)
    {
        const QString name = place->name;
        createColor(place->hex, newUid, listName, pathOf(place), place->vendor);
        rename(newUid, unique(name, namesOf(*findList(listName))), true);
    }

    // The exposable uid where no copy is needed; otherwise empty.
    QString exposed(const Place &place) const
    {
        if (place.list->name == PROJECT_SWATCHES)
            return place->uid;
        const Place copy = find(&Color::origin, place->origin.isEmpty() ? pathOf(place) : place->origin);
        return copy.isValid() ? copy->uid : "";
    }

    QStringList lines() const
    {
        QStringList result;
        for (const ListPtr &list : m_lists) {
            result << QStringList({"list", list->name, QString::number(list->canBeModified)}).join('|');
            for (const ColorPtr &color : list->colors) {
                result << QStringList({QString::number(color->type), color->name, color->uid, color->value,
                                       color->oldPreset, color->origin, color->vendor, color->hex,
                                       QString::number(color->canBeModified)})
                              .join('|');
            }
        }
        return result;
    }

    std::vector<ListPtr> m_lists;
};

QStringList linesOf(const TrelColorLibrary *library)
{
    QStringList result;
    for (int i = 0; i < library->rowCount(library->rootIndex()); ++i) {
        const QModelIndex list = library->index(i, 0, library->rootIndex());
        result << QStringList({"list", list.data(Qt::EditRole).toString(),
                               QString::number(list.data(Item::CanBeModifiedRole).toBool())})
                      .join('|');
        for (int j = 0; j < library->rowCount(list); ++j) {
            const QModelIndex index = library->index(j, 0, list);
            QStringList line;
            for (const int role :
                 {int(Item::ItemTypeRole), int(Qt::EditRole), int(Item::UidRole), int(Item::ExplicitColorRole),
                  int(Item::OldPresetRole), int(Item::OriginatingPresetRole), int(Item::VendorIdRole)})
                line << index.data(role).toString();
            line << hexOf(*static_cast<TrelColor *>(index.data(Item::ColorRole).value<void *>()));
            line << QString::number(index.data(Item::CanBeModifiedRole).toBool());
            result << line.join('|');
        }
    }
    return result;
}

// Where an index is, for comparison with a place.
QString placeOf(const QModelIndex &index)
{
    if (!index.isValid())
        return "none";
    return TrelColorLibrary::Instance()->parent(index).data(Qt::EditRole).toString() + ' '
           + QString::number(index.row());
}

QString placeOf(const PlainLibrary::Place &place)
{
    return place.isValid() ? place.list->name + ' ' + QString::number(place.row) : "none";
}

} // namespace

class LibraryTwins::Impl
{
public:
    explicit Impl(std::function<unsigned int()> random)
        : m_random(std::move(random))
    {
    }

    void step()
    {
        using Operation = void (Impl::*)();
        static constexpr Operation OPERATIONS[] = {
            &Impl::createColor,
            &Impl::createColor,
            &Impl::createColorWithName,
            &Impl::createColorWithName,
            &Impl::insertColor,
            &Impl::rename,
            &Impl::rename,
            &Impl::remove,
            &Impl::removeRows,
            &Impl::clear,
            &Impl::getUid,
            &Impl::getValue,
            &Impl::createExplicit,
            &Impl::createSwatch,
            &Impl::expose,
            &Impl::setText,
            &Impl::setText,
            &Impl::setItemText,
            &Impl::insertRow,
            &Impl::itemSet,
            &Impl::itemInsertColor,
            &Impl::createList,
            &Impl::removeList,
            &Impl::renameList,
        };
        m_log.clear();
        (this->*OPERATIONS[draw(int(std::size(OPERATIONS)))])();
    }

    void lookUp()
    {
        m_log = "look-up";
        const QString uid = anyUid();
        same(placeOf(library()->getIndexOfUid(uid)), placeOf(m_plain.find(&Color::uid, uid)));
        same(QString::number(library()->containsUid(uid)), QString::number(m_plain.find(&Color::uid, uid).isValid()));
        const QString value = anyValue();
        same(placeOf(library()->getIndexOfExplicitColor(value)), placeOf(m_plain.find(&Color::value, value)));
        const QString origin = anyOrigin();
        same(placeOf(library()->getIndexOfOriginatingPreset(origin)), placeOf(m_plain.find(&Color::origin, origin)));
        const QString name = anyName();
        same(placeOf(library()->getIndexOfOldPreset(name)), placeOf(m_plain.find(&Color::oldPreset, name)));
        const QString listName = anyListName();
        same(library()->getNewColorListName(listName), m_plain.newListName(listName));
        const ListPtr list = m_plain.findList(listName);
        same(QString::number(library()->nameExists(listName)), QString::number(list != nullptr));
        const int row = list ? int(PlainLibrary::namesOf(*list).indexOf(name)) : -1;
        same(QString::number(library()->nameExists(name, listName)), QString::number(row >= 0));
        same(QString::number(library()->getIndexOfName(name, library()->getIndexOfListId(listName)).row()),
             QString::number(row));
    }

    QString difference()
    {
        const QStringList actual = linesOf(library());
        const QStringList expected = m_plain.lines();
        if (m_failure.isEmpty() && actual != expected)
            m_failure = m_log + "\nactual:\n" + actual.join('\n') + "\nexpected:\n" + expected.join('\n');
        return m_failure;
    }

private:
    using Color = PlainLibrary::Color;
    using ListPtr = PlainLibrary::ListPtr;
    using Place = PlainLibrary::Place;

    static TrelColorLibrary *library()
    {
        return TrelColorLibrary::Instance();
    }

    int draw(int count)
    {
        return int(m_random() % unsigned(count));
    }

    QString drawFrom(const QStringList &texts)
    {
        return texts[draw(int(texts.size()))];
    }

    QString anyUid()
    {
        return QStringLiteral("{%1}").arg(draw(30));
    }

    QString anyName()
    {
        static const QStringList NAMES{"Color", "Color 2", "Color 3", "Red", "Red 2", "red",
                                       "%1",    "%1 2",    "%2 %1",   "a/b", "Red 4", "Red 2 2"};
        return drawFrom(NAMES);
    }

    QString anyValue()
    {
        static const QStringList VALUES{"#000000", "#102030", "#ff0000", "#00ff00", "#0000ff", "#ffffff"};
        return drawFrom(VALUES);
    }

    QString anyOrigin()
    {
        static const QStringList ORIGINS{"Mine/Red", "Mine/Color", "Presets/Red", "Presets/%1", "Elsewhere/Red 2"};
        return drawFrom(ORIGINS);
    }

    QString anyListName()
    {
        static const QStringList LISTS{"Mine", "Mine 2", "Presets", "%1", PROJECT_SWATCHES};
        return drawFrom(LISTS);
    }

    ListPtr anyList()
    {
        return m_plain.m_lists[size_t(draw(int(m_plain.m_lists.size())))];
    }

    QModelIndex indexOf(const ListPtr &list) const
    {
        return library()->getIndexOfListId(list->name);
    }

    Item *itemOf(const ListPtr &list) const
    {
        return static_cast<Item *>(indexOf(list).internalPointer());
    }

    // A colour of a list that has some; an invalid place otherwise.
    Place anyPlace()
    {
        const ListPtr list = anyList();
        return list->colors.empty() ? Place() : Place{list, draw(int(list->colors.size()))};
    }

    QModelIndex indexOf(const Place &place) const
    {
        return library()->index(place.row, 0, indexOf(place.list));
    }

    void log(const QStringList &words)
    {
        m_log = words.join(' ');
    }

    void same(const QString &actual, const QString &expected)
    {
        if (actual != expected && m_failure.isEmpty())
            m_failure = m_log + " gave \"" + actual + "\", expected \"" + expected + '"';
    }

    void createColor()
    {
        const QString hex = anyValue();
        const QString uid = draw(3) == 0 ? QString() : anyUid();
        const QString list = anyListName();
        const QString origin = draw(2) == 0 ? QString() : anyOrigin();
        const QString vendor = draw(2) == 0 ? QString() : anyName();
        log({"createColor", uid, list});
        const QString newUid = library()->createColor(TrelColor(hex), uid, list, origin, vendor);
        if (!uid.isEmpty())
            same(newUid, uid);
        m_plain.createColor(hex, newUid, list, origin, vendor);
    }

    void createColorWithName()
    {
        const QString hex = anyValue();
        const QString uid = draw(3) == 0 ? QString() : anyUid();
        const QString list = anyListName();
        const QString name = draw(10) == 0 ? QString() : anyName();
        const QString vendor = draw(2) == 0 ? QString() : anyName();
        log({"createColorWithName", name, uid, list});
        const QString newUid = library()->createColorWithName(TrelColor(hex), name, uid, list, vendor);
        if (!uid.isEmpty())
            same(newUid, uid);
        m_plain.createColorWithName(hex, name, newUid, list, vendor);
    }

    void insertColor()
    {
        const QString hex = anyValue();
        const QString uid = anyUid();
        const QString list = anyListName();
        const QString name = anyName();
        log({"handleInsertColor", name, uid, list});
        library()->handleInsertColor(uid, name, hex, anyOrigin(), list, name);
        m_plain.createColorWithName(hex, name, uid, list, name);
    }

    void rename()
    {
        const QString uid = anyUid();
        const QString name = anyName();
        const bool keepOrigin = draw(2) == 0;
        log({"rename", uid, name, QString::number(keepOrigin)});
        same(library()->rename(uid, name, keepOrigin), m_plain.rename(uid, name, keepOrigin));
    }

    void remove()
    {
        const QString uid = anyUid();
        log({"remove", uid});
        const Place place = m_plain.find(&Color::uid, uid);
        same(QString::number(library()->remove(uid)), QString::number(place.isValid()));
        if (place.isValid())
            PlainLibrary::removeRow(*place.list, place.row);
    }

    void removeRows()
    {
        const Place place = anyPlace();
        if (!place.isValid())
            return;
        const int count = 1 + draw(int(place.list->colors.size()) - place.row);
        log({"removeRows", place.list->name, QString::number(place.row), QString::number(count)});
        library()->removeRows(place.row, count, indexOf(place.list));
        for (int i = 0; i < count; ++i)
            PlainLibrary::removeRow(*place.list, place.row);
    }

    void clear()
    {
        const ListPtr list = anyList();
        if (draw(3) != 0)
            return;
        log({"clear", list->name});
        library()->clear(list->name);
        while (!list->colors.empty())
            PlainLibrary::removeRow(*list, 0);
    }

    void getUid()
    {
        const QString uid = anyUid();
        log({"get", uid});
        same(hexOf(library()->get(uid)), m_plain.get(uid));
    }

    void getValue()
    {
        const QString value = anyValue();
        log({"get", value});
        same(hexOf(library()->get(value)), m_plain.get(value));
    }

    void createExplicit()
    {
        const QString value = anyValue();
        const QString hex = anyValue();
        log({"createExplicitColor", hex, value});
        same(library()->createExplicitColor(TrelColor(hex), value), value);
        PlainLibrary::append(*m_plain.listNamed(EXPLICIT_COLORS), Item::EXPLICIT_COLOR_ITEM, value, hex);
    }

    void createSwatch()
    {
        const QString uid = anyUid();
        const QString list = anyListName();
        log({"createNewSwatchUidFromUid", uid, list});
        const Place place = m_plain.find(&Color::uid, uid);
        const QString newUid = library()->createNewSwatchUidFromUid(uid, list);
        same(QString::number(newUid.size()), place.isValid() ? "38" : "0");
        if (place.isValid())
            m_plain.createSwatch(place, newUid, list);
    }

    void expose()
    {
        const QString uid = anyUid();
        log({"getExposableUidFromUid", uid});
        const Place place = m_plain.find(&Color::uid, uid);
        // A colour with neither name nor preset has no path to be found by.
        if (place.isValid() && place->name.isEmpty() && place->origin.isEmpty())
            return;
        const QString exposable = library()->getExposableUidFromUid(uid);
        if (!place.isValid()) {
            same(exposable, "");
            return;
        }
        const QString copy = m_plain.exposed(place);
        const QString path = place->origin.isEmpty() ? m_plain.pathOf(place) : place->origin;
        if (place.list->name == PROJECT_SWATCHES || m_plain.find(&Color::origin, path).isValid())
            same(exposable, copy);
        else
            m_plain.createSwatch(place, exposable, PROJECT_SWATCHES);
    }

    // What a view or a host writes into the model; no role touches the list's index of children.
    void setText()
    {
        static const struct
        {
            int role;
            QString Color::*field;
            int type;
        } ROLES[] = {
            {Item::UidRole, &Color::uid, Item::UID_COLOR_ITEM},
            {Item::ExplicitColorRole, &Color::value, Item::EXPLICIT_COLOR_ITEM},
            {Item::OldPresetRole, &Color::oldPreset, Item::OLD_PRESET_ITEM},
            {Item::OriginatingPresetRole, &Color::origin, -1},
            {Item::VendorIdRole, &Color::vendor, -1},
            {Qt::EditRole, &Color::name, -1},
            {Qt::ToolTipRole, &Color::name, -1},
        };
        const Place place = anyPlace();
        if (!place.isValid())
            return;
        const auto &role = ROLES[draw(int(std::size(ROLES)))];
        const QString text = role.field == &Color::uid      ? anyUid()
                             : role.field == &Color::value  ? anyValue()
                             : role.field == &Color::origin ? anyOrigin()
                                                            : anyName();
        log({"setData", QString::number(role.role), text, place.list->name, QString::number(place.row)});
        const bool isRefused = role.role == Qt::EditRole && PlainLibrary::namesOf(*place.list).contains(text);
        same(QString::number(library()->setData(indexOf(place), text, role.role)), QString::number(!isRefused));
        if (isRefused)
            return;
        if (role.type >= 0)
            place->type = role.type;
        if (role.field == &Color::name)
            PlainLibrary::setName(*place.operator->(), text);
        else
            (*place.operator->()).*role.field = text;
    }

    // What reaches a colour behind the model's back.
    void setItemText()
    {
        const Place place = anyPlace();
        if (!place.isValid())
            return;
        Item *item = static_cast<Item *>(indexOf(place).internalPointer());
        if (draw(2) == 0) {
            const QString uid = anyUid();
            log({"setUid", uid});
            item->setUid(uid);
            place->uid = uid;
            return;
        }
        const QString name = anyName();
        log({"setDisplayName", name});
        item->setDisplayName(name);
        PlainLibrary::setName(*place.operator->(), name);
    }

    void insertRow()
    {
        const ListPtr list = anyList();
        const int row = draw(int(list->colors.size()) + 1);
        log({"insertRows", list->name, QString::number(row)});
        library()->insertRows(row, 1, indexOf(list));
        const PlainLibrary::ColorPtr color = std::make_shared<Color>();
        color->canBeModified = list->canBeModified;
        list->colors.insert(list->colors.begin() + row, color);
    }

    void itemSet()
    {
        const ListPtr list = anyList();
        const QString uid = anyUid();
        const QString hex = anyValue();
        log({"item's set", list->name, uid});
        same(QString::number(itemOf(list)->set(uid, TrelColor(hex))), "1");
        PlainLibrary::append(*list, Item::UID_COLOR_ITEM, uid, hex);
    }

    void itemInsertColor()
    {
        const ListPtr list = anyList();
        const QString uid = anyUid();
        const QString hex = anyValue();
        const QString name = anyName();
        const QString origin = anyOrigin();
        log({"item's handleInsertColor", list->name, uid, name});
        itemOf(list)->handleInsertColor(uid, name, hex, origin, QString(), "V");
        PlainLibrary::append(*list, Item::UID_COLOR_ITEM, uid, hex);
        for (const PlainLibrary::ColorPtr &color : list->colors) {
            if (color->uid != uid)
                continue;
            PlainLibrary::setName(*color, name);
            color->origin = origin;
            color->vendor = "V";
            return;
        }
    }

    void createList()
    {
        if (m_plain.m_lists.size() > 7)
            return;
        const QString name = anyListName();
        const bool isUserList = draw(2) == 0;
        log({"createColorList", name});
        const QString newName = m_plain.newListName(name);
        library()->createColorList(name, isUserList);
        m_plain.listNamed(newName)->canBeModified = isUserList;
    }

    void removeList()
    {
        const int row = draw(int(m_plain.m_lists.size()));
        if (draw(4) != 0)
            return;
        log({"removeRows of list", QString::number(row)});
        library()->removeRows(row, 1, library()->rootIndex());
        m_plain.m_lists.erase(m_plain.m_lists.begin() + row);
        if (m_plain.m_lists.empty()) {
            library()->createColorList("Mine", true);
            m_plain.listNamed("Mine")->canBeModified = true;
        }
    }

    void renameList()
    {
        const ListPtr list = anyList();
        const QString name = anyListName();
        log({"setData of list", list->name, name});
        const bool isFree = !m_plain.findList(name);
        same(QString::number(library()->setData(indexOf(list), name, Qt::EditRole)), QString::number(isFree));
        if (isFree)
            list->name = name;
    }

    std::function<unsigned int()> m_random;
    PlainLibrary m_plain;
    QString m_log;
    QString m_failure;
};

LibraryTwins::LibraryTwins(std::function<unsigned int()> random)
    : m_impl(std::make_unique<Impl>(std::move(random)))
{
}

LibraryTwins::~LibraryTwins() = default;

void LibraryTwins::step()
{
    m_impl->step();
}

void LibraryTwins::lookUp()
{
    m_impl->lookUp();
}

QString LibraryTwins::difference()
{
    return m_impl->difference();
}
