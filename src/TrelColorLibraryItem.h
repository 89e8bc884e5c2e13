#pragma once

#include "TrelColor.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPixmap>
#include <QStringList>
#include <QVarLengthArray>
#include <QVariant>

#include <optional>
#include <set>

class QDataStream;
class QDomDocument;
class QDomElement;

/// One node of the colour library's tree: the root, a colour list, or a colour of a list.
///
/// Hosts reach items through TrelColorLibrary, whose data roles are declared here. An item owns its children.
class TREL_EXPORT TrelColorLibraryItem : public QObject
{
    Q_OBJECT

public:
    /// What a node is.
    enum ItemType : int {
        LIST_ITEM = 0,           ///< the root or a list
        UID_COLOR_ITEM = 1,      ///< a colour known by its identifier
        EXPLICIT_COLOR_ITEM = 2, ///< a colour known by its value string
        OLD_PRESET_ITEM = 3      ///< a reference to a preset of an older file, by name
    };

    /// Data roles beside Qt's DisplayRole, DecorationRole, EditRole and ToolTipRole. Fixed numbers, since Qt's own
    /// UserRole is not the same in all its versions.
    enum Role : int {
        ColorRole = 33,             ///< a void* to the item's own TrelColor; written, one to copy from
        UidRole = 34,               ///< the identifier; writing it makes a #UID_COLOR_ITEM
        ExplicitColorRole = 35,     ///< the value string; writing it makes an #EXPLICIT_COLOR_ITEM
        OldPresetRole = 36,         ///< the preset's name; writing it makes an #OLD_PRESET_ITEM
        CanBeModifiedRole = 37,     ///< bool
        ItemTypeRole = 38,          ///< an #ItemType as int, read only
        ListStateRole = 39,         ///< int used as a bool, for hosts
        OriginatingPresetRole = 40, ///< the preset that the colour came from
        VendorIdRole = 41           ///< the vendor's identifier of the colour
    };

    /// An item of type #LIST_ITEM under \a parent (null for the root), which it is not yet a child of. Its
    /// originating preset is one character, U+0000 or U+0001 by \a flag (ODD-57).
    TrelColorLibraryItem(TrelColorLibraryItem *parent, bool flag);
    /// Destroys the children.
    ~TrelColorLibraryItem() override;

    /// Value of \a role in \a column (0 name, 1 vendor identifier); invalid for any other role.
    virtual QVariant data(int role, int column) const;
    /// Writes \a value; the column plays no part. \return whether the role can be written.
    virtual bool setData(const QVariant &value, int role, int column);
    /// "data/x-trelcolor" for a colour, nothing for a list.
    virtual QStringList mimeTypes() const;
    /// Writes the uid and the value string to \a out, each as a QByteArray. \return false, without writing, for any
    /// other type than "data/x-trelcolor".
    virtual bool mimeData(const QString &mimeType, QDataStream &out) const;

    /// \name Structure
    /// @{

    /// The parent item; null for the root.
    TrelColorLibraryItem *parent() const;
    /// The child at \a row; null outside 0..childCount() − 1.
    TrelColorLibraryItem *child(int row) const;
    /// Number of children.
    int childCount() const;
    /// Position among the parent's children; 0 for the root.
    int row() const;
    /// 2 for lists and colours with an identifier, 0 for the others (ODD-58).
    int columnCount() const;
    /// Appends \a item, without an index entry, and owns it from then on.
    void appendChild(TrelColorLibraryItem *item);
    /// Inserts \a count new items at \a position. Fatal: "index out of range" outside 0..childCount(), and
    /// "childItems.size() > 0" where nothing stands afterwards.
    void insertChildren(int position, int count);
    /// Takes \a count children from \a position on out and deletes them later; nothing for an item without
    /// children. Fatal: "index out of range" where there are fewer.
    void removeChildren(int position, int count);
    /// The child that was created last under identifier \a uid; null for none.
    TrelColorLibraryItem *childWithUid(const QString &uid) const;
    /// The same operation under another name, for value strings.
    TrelColorLibraryItem *childWithExplicitColor(const QString &value) const;
    /// The first child in row order whose uid is \a uid now; null for none.
    TrelColorLibraryItem *firstChildWithUid(const QString &uid) const;
    /// Whether a child has display name \a name.
    bool hasChildNamed(const QString &name) const;
    /// \a name, or the first of "name 2", "name 3", … that no child has.
    QString freeChildName(const QString &name) const;
    /// @}

    /// \name Fields
    /// Plain assignments unless said otherwise.
    /// @{

    /// Name shown in column 0.
    QString displayName() const;
    /// Renames, and cuts the tie to preset and vendor by emptying both (ODD-59); an empty name is ignored.
    void setDisplayName(const QString &name);
    /// Identifier.
    QString getUid() const;
    /// Sets the identifier; the type stays.
    void setUid(const QString &uid);
    /// Value string of an explicit colour.
    QString getExplicitColorString() const;
    /// Sets the value string; the type stays.
    void setExplicitColorString(const QString &value);
    /// Name of an old preset.
    QString getOldPreset() const;
    /// Sets the name; the type stays.
    void setOldPreset(const QString &name);
    /// Preset that the colour came from.
    QString orignatingPreset() const;
    /// Sets the preset.
    void setOriginatingPreset(const QString &preset);
    /// The vendor's identifier of the colour.
    QString vendorID() const;
    /// Sets the identifier.
    void setVendorID(const QString &id);
    /// Swatch thumbnail; null for none.
    QPixmap getIcon() const;
    /// Sets the thumbnail.
    void setIcon(const QPixmap &icon);
    /// The colour.
    TrelColor getTrelColor() const;
    /// Sets the colour and, of a #UID_COLOR_ITEM, the thumbnail where the library can make one.
    void setTrelColor(const TrelColor &color);
    /// Whether the user may change the item; copied from the parent at construction.
    bool canBeModified() const;
    /// Sets whether the user may change the item.
    void setCanBeModified(bool canBeModified);
    /// @}

    /// \name Colours of a list
    /// @{

    /// Appends a colour, named "Color" or the first of "Color 2", "Color 3", … that is not in \a names.
    /// \param uid identifier; a fresh one when empty.
    /// \return the identifier.
    QString createColor(const TrelColor &color, QString uid, QStringList names, const QString &originatingPreset,
                        const QString &vendorID);
    /// The same with the names of all children.
    QString createColor(const TrelColor &color, const QString &uid, const QString &originatingPreset,
                        const QString &vendorID);
    /// Appends a colour known by \a value alone. \return \a value.
    QString createExplicitColor(const TrelColor &color, QString value);
    /// Appends a colour under identifier \a uidAndValue, whole; never replaces one (ODD-60).
    /// \return false, adding nothing, for an invalid colour.
    bool set(const QString &uidAndValue, const TrelColor &color);
    /// @}

    /// \name Documents
    /// @{

    /// Replaces the children by the colours of all lists in \a doc. Old presets follow them.
    /// \param error receives the reader's complaint, if any.
    /// \return true, also when the reader failed; nothing happens for an application other than "Kestra".
    bool loadDocument(QDomDocument &doc, QString &error, double version, QString applicationId);
    /// The list's element, with the children that have an identifier.
    /// \param ok false, with a null element, for an application other than "Kestra".
    QDomElement createElement(QDomDocument &doc, bool &ok, QString applicationId, bool isUserLibrary) const;
    /// Takes over the children of \a other, behind its own.
    void adoptChildren(TrelColorLibraryItem *other);
    /// @}

public Q_SLOTS:
    /// set(), and then the name, preset and vendor of the first child with that uid, which may be an older one
    /// (ODD-61). \a listId plays no part.
    void handleInsertColor(QString uid, QString name, QString valueString, QString originatingPreset,
                           const QString &listId, const QString &vendorID);

private:
    /// Which "name n" no child has, for n from 2 up: the ones given back below the mark, and all from the mark on
    /// but for some that nobody has asked for yet.
    struct FreeNumbers
    {
        int mark = 2;
        std::set<int> givenBack;
    };

    /// The children of each text, in row order. Nearly always that is one, which stands in the hash itself.
    class ChildrenByText
    {
    public:
        /// The first child in row order; null for none.
        TrelColorLibraryItem *first(const QString &text) const;
        bool contains(const QString &text) const;
        void add(const QString &text, TrelColorLibraryItem *child);
        void remove(const QString &text, TrelColorLibraryItem *child);
        void clear();

    private:
        QHash<QString, QVarLengthArray<TrelColorLibraryItem *, 1>> m_children;
    };

    friend class TrelColorLibrary; // whose lists are known by their names

    /// The first child in row order whose display name is \a name; null for none.
    TrelColorLibraryItem *firstChildNamed(const QString &name) const;
    TrelColorLibraryItem *appendNewChild(const QString &indexKey, ItemType type, const QString &name);
    bool isChild() const;
    QString appendColor(const TrelColor &color, const QString &uid, const QString &name,
                        const QString &originatingPreset, const QString &vendorID);
    void addToIndexes(TrelColorLibraryItem *child);
    void removeFromIndexes(TrelColorLibraryItem *child);
    void giveBackNumber(const QString &name);
    void clearChildren();
    void numberRows(int first);

    QList<TrelColorLibraryItem *> childItems;
    QHash<QString, TrelColorLibraryItem *> childIndex; ///< children by the key under which they were created
    TrelColorLibraryItem *m_parent;
    QString m_displayName;
    QString m_oldPreset;
    TrelColor m_color;
    QString m_uid;
    QString m_explicitColorString;
    std::optional<QPixmap> m_icon; ///< none can be made before there is an application object
    QString m_vendorID;
    ItemType m_type = LIST_ITEM;
    int m_listState = 1;
    bool m_canBeModified;
    QString m_originatingPreset;

    // Derived, so that lists grow in linear time: always what a walk over the children would find.
    ChildrenByText m_childrenByName;
    ChildrenByText m_childrenByUid;
    mutable QHash<QString, FreeNumbers> m_freeNumbers; ///< by name, of those once asked for
    QString m_indexKey;                                ///< this item's key in the parent's childIndex
    int m_row = 0;
};
