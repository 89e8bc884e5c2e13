#pragma once

#include "TrelColor.h"
#include "TrelColorLibraryItem.h"

#include <QAbstractItemModel>
#include <QPixmap>
#include <QStringList>

#include <memory>

class QDomDocument;
class QDomElement;
class QMimeData;
class UserColorFile;

/// MIME types of dragged colours beside TRELCOLOR_MIME_TYPE.
inline constexpr char kTRELCOLOR_NAME_MIME_TYPE[] = "data/x-trelcolor-name";
/// The vendors' identifiers.
inline constexpr char kTRELCOLOR_VENDOR_ID_MIME_TYPE[] = "data/x-trelcolor-vendorid";

/// The colour library of the process: lists of named colours, as an item model for views.
///
/// The lists are the rows of rootIndex(), which views set as their root index, and the colours are their rows.
/// Column 0 is the name, column 1 the vendor's identifier; the data roles are TrelColorLibraryItem::Role. A list is
/// identified by its name (its list id), a colour by its uid. "Explicit Colors" holds colours that exist as a value
/// only, "Project Swatches" those that the project uses; user lists are the ones that the user may rename, and they
/// are saved at every change once they were loaded.
///
/// Thumbnails need a QGuiApplication, since they are pixmaps; all else works without one. The library goes with the
/// application object. GUI thread only.
class TREL_EXPORT TrelColorLibrary final : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// What a host shows of a colour beside its swatch.
    enum ColorDescriptor : int {
        NameDescriptor = 1,        ///< its name
        ValueStringDescriptor = 2, ///< its value string
        HexDescriptor = 3,         ///< "#rrggbb"
        VendorIdDescriptor = 4     ///< the vendor's identifier
    };

    /// Makes a swatch's thumbnail.
    using ThumbnailGenerator = QPixmap (*)(const TrelColor &);

    /// \name Life
    /// @{

    /// The library, created on first call with its two fixed lists.
    static TrelColorLibrary *Instance();
    /// Destroys the library without saving; the next Instance() makes a fresh one. Runs by itself before the
    /// application object goes.
    static void cleanup();
    TrelColorLibrary(const TrelColorLibrary &) = delete;
    TrelColorLibrary &operator=(const TrelColorLibrary &) = delete;
    /// As cleanup() does it.
    ~TrelColorLibrary() override;
    /// @}

    /// \name Item model
    /// @{

    /// Invalid under the invalid index and where \a parent has no such row. The column is not checked.
    QModelIndex index(int row, int column, const QModelIndex &parent) const override;
    using QObject::parent;
    /// The index above; that of a colour is found by its list's name.
    QModelIndex parent(const QModelIndex &index) const override;
    /// Children of \a index; 0 for the invalid index.
    int rowCount(const QModelIndex &index) const override;
    /// 2 for lists and colours with a uid, otherwise 0.
    int columnCount(const QModelIndex &index) const override;
    /// Whether there are rows.
    bool hasChildren(const QModelIndex &index) const override;
    /// Value of \a role; invalid for an invalid index.
    QVariant data(const QModelIndex &index, int role) const override;
    /// Writes \a value into column 0 (ODD-62) and saves a user list. A name that a sibling has, or the item itself,
    /// is refused.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    /// "Swatches" and "Color ID", for any section but 0.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    /// Empty; dragging does not depend on it.
    QStringList mimeTypes() const override;
    /// The dragged colours in each format, joined by ","; the caller owns the result. Names with a comma split.
    QMimeData *mimeData(const QModelIndexList &indexes) const override;
    /// Inserts \a count empty lists or colours. Announces one row more than that and returns false (ODD-63).
    bool insertRows(int row, int count, const QModelIndex &parent) override;
    /// Removes rows and saves a user list; false, also after a success (ODD-63).
    bool removeRows(int row, int count, const QModelIndex &parent) override;
    /// Colours and empty lists can be dragged (ODD-64); user lists and their colours edited, in column 0.
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// The index of the root, under which the lists are.
    QModelIndex rootIndex() const;
    /// Whether \a index is a list.
    bool isListIndex(const QModelIndex &index) const;
    /// Whether \a index is a list that the user may rename, which is saved in the user's file.
    bool isUserListIndex(const QModelIndex &index) const;
    /// @}

    /// \name Uids and values
    /// A uid-and-value string is a uid in braces directly followed by a value string; either may be missing.
    /// @{

    /// Everything up to the first "}"; empty when there is none.
    static QString UidAndValueToUid(const QString &uidAndValue);
    /// Everything behind the first "}"; the whole text when there is none or it comes first (ODD-65).
    static QString UidAndValueToValue(const QString &uidAndValue);
    /// @}

    /// \name Look-up
    /// The first match in row order; invalid or false when there is none.
    /// @{

    /// The list with this name.
    QModelIndex getIndexOfListId(const QString &listId) const;
    /// The colour with this uid.
    QModelIndex getIndexOfUid(const QString &uid) const;
    /// The explicit colour with this value string.
    QModelIndex getIndexOfExplicitColor(const QString &value) const;
    /// The colour that was copied from \a path.
    QModelIndex getIndexOfOriginatingPreset(const QString &path) const;
    /// The entry of an old preset.
    QModelIndex getIndexOfOldPreset(const QString &name) const;
    /// The colour of a list with this name.
    QModelIndex getIndexOfName(const QString &name, const QModelIndex &listIndex) const;
    /// Whether a colour has this uid.
    bool containsUid(const QString &uid) const;
    /// Whether a list has this name.
    bool nameExists(const QString &name) const;
    /// Whether a colour of the list has this name.
    bool nameExists(const QString &name, const QString &listId) const;
    /// @}

    /// \name Colours
    /// @{

    /// The colour with this uid, otherwise the one with this value, otherwise magenta. A value without a uid is
    /// kept in "Explicit Colors".
    TrelColor get(const QString &uidAndValue);
    /// get() as a QColor, clamped to the gamut.
    QColor getQColor(const QString &uidAndValue);
    /// Writes the colour with this uid; false for an unknown one and for an invalid colour.
    bool set(const QString &uidAndValue, const TrelColor &color);
    /// The colours of a list, in row order.
    QList<TrelColor> getColors(const QString &listId) const;
    /// The uids of a list's colours, in row order.
    QStringList getColorUids(const QString &listId) const;
    /// Adds a colour named "Color", "Color 2", … to the list, which is created where missing. \return its uid.
    QString createColor(const TrelColor &color, QString uid, const QString &listId, const QString &originatingPreset,
                        const QString &vendorID);
    /// The same with a name, made unique; its own provisional name counts (ODD-66).
    QString createColorWithName(const TrelColor &color, const QString &name, QString uid, const QString &listId,
                                const QString &vendorID);
    /// Adds a colour to "Explicit Colors". \return \a value.
    QString createExplicitColor(const TrelColor &color, QString value);
    /// Renames a colour. \return \a newName, also when a sibling has it (ODD-67); empty for an unknown uid.
    /// \param keepOrigin keeps preset and vendor, which a new name otherwise clears.
    QString rename(const QString &uid, const QString &newName, bool keepOrigin);
    /// Removes a colour; false for an unknown uid.
    bool remove(const QString &uid);
    /// Removes all colours of a list; false for an unknown list.
    bool clear(const QString &listId);
    /// What \a descriptor (a #ColorDescriptor) says of a colour; empty for an unknown uid or descriptor.
    QString getName(const QString &uid, int descriptor) const;
    /// getName() for the descriptor, or its name where that is empty.
    QString getAlternativeColorDescriptor(QString uid, ColorDescriptor descriptor) const;
    /// @}

    /// \name Lists
    /// @{

    /// The list's index; it is created where missing, last, with its list state cleared for \a flag.
    QModelIndex createNewLibraryIfNecessary(const QString &listId, bool flag);
    /// \a name, or the first of "name 2", "name 3", … that no list has.
    QString getNewColorListName(const QString &name) const;
    /// @}

    /// \name Swatches
    /// @{

    /// List and name of a colour, joined by "/"; empty for one without a name or an unknown uid.
    QString pathOfUid(QString uid) const;
    /// Copies a colour into a list, with where it came from. \return its uid; empty for an unknown \a uid.
    QString createNewSwatchUidFromUid(const QString &uid, const QString &listId);
    /// The uid to hand out to a project: that of the colour's one copy in "Project Swatches". Empty for an unknown
    /// uid.
    QString getExposableUidFromUid(QString uid);
    /// @}

    /// \name Files and documents
    /// docs/formats.md has the grammar and the places.
    /// @{

    /// Adds the lists of every "*.trelcolors" file beside the application, in name order.
    void loadPresetFiles();
    /// Adds the lists of a user file; without \a path those of the default one, which from then on is saved at every
    /// change. What cannot be read is left out without a message, and never lost.
    void loadUserColors(const QString &path);
    /// Writes the default user file, once loadUserColors() has read it. A failure leaves the old file whole.
    void saveUserColors();
    /// Folder of the user's file.
    static QString applicationSupportDir();
    /// Whether setContainsDefaults() was called.
    bool containsDefaults() const;
    /// Cannot be taken back.
    void setContainsDefaults();
    /// Names of the old presets in all lists, in row order.
    QStringList oldPresets() const;
    /// Removes the old presets from all lists.
    void clearOldPresets();
    /// Replaces "Project Swatches" by the colours of a project document. \see TrelColorLibraryItem::loadDocument()
    bool loadDocument(QDomDocument &doc, QString &error, double version, QString applicationId);
    /// The element of "Project Swatches" for a project document.
    QDomElement createElement(QDomDocument &doc, bool &ok, QString applicationId) const;
    /// A document of its own with one list \a listName of the colours at \a indexes.
    QDomDocument createColorDoc(const QModelIndexList &indexes, const QString &listName) const;
    /// Brackets a batch of edits: true before, false after, which saves once. \param on
    void setEditingMultipleColors(bool on);
    /// @}

    /// First originating preset of a drag that the host has marked with "x-kestra/color"; otherwise empty.
    static QString getOriginatingPresetFromMimeData(const QMimeData *data);

    /// \name Thumbnails
    /// @{

    /// Stores the host's thumbnail function, which must stand before colours are loaded. Null for none.
    void setThumbnailGenerator(ThumbnailGenerator generator);
    /// Whether there is one.
    bool canGeneratePixmap() const;
    /// Its result; a null pixmap without one.
    QPixmap generatePixmap(const TrelColor &color) const;
    /// @}

    /// Emits changed() when there is such a list.
    void eventLibraryChanged(const QString &listId);

Q_SIGNALS:
    /// A list's content changed.
    void changed(QString listId);
    /// A colour was created in the list at this index.
    void addedColorToList(QModelIndex &listIndex);

public Q_SLOTS:
    /// Emits changed(), whatever the list.
    void onColorLibraryListChanged(QString listId);
    /// Creates a list under a name made unique.
    void createColorList(QString colorListName, bool isUserList);
    /// createColorWithName(); the originating preset is ignored (ODD-68).
    void handleInsertColor(QString uid, QString name, QString valueString, QString originatingPreset, QString listId,
                           QString vendorID);

private:
    class Edit;

    TrelColorLibrary();
    TrelColorLibraryItem *itemOf(const QModelIndex &index) const;
    QModelIndex indexOf(TrelColorLibraryItem *item) const;
    TrelColorLibraryItem *listItem(const QString &listId) const;
    TrelColorLibraryItem *itemOfUid(const QString &uid) const;
    template <typename Matches>
    QModelIndex findColor(Matches matches) const;
    void triggerSave();
    bool loadLists(const QDomDocument &document, double version);
    QByteArray userDocument() const;

    static TrelColorLibrary *m_instance;

    TrelColorLibraryItem *rootItem = nullptr;
    TrelColor defaultColor;
    ThumbnailGenerator thumbnailGenerator = nullptr;
    bool m_containsDefaults = false;
    bool destroying = false;
    bool userColorsLoaded = false;
    bool editingMultipleColors = false;
    bool saveUserColorsPending = false;
    bool m_metLoss = false; ///< since the flag was cleared, a colour came in that a save would not write as it was
    int m_openEdits = 0;    ///< operations under way that set several values and save once
    std::unique_ptr<UserColorFile> m_userFile;
};
