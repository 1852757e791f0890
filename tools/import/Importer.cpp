#include "tools/import/Importer.h"

#include <array>

#include "tools/import/DotImporter.h"
#include "tools/import/GraphmlImporter.h"
#include "tools/import/Rfc8345Importer.h"
#include "tools/json/LocatedJson.h"

namespace TopologyTools {
namespace {

std::array<Importer const *, 3> importers() {
    static Rfc8345Importer const rfc8345;
    static DotImporter const dot;
    static GraphmlImporter const graphml;
    return {&rfc8345, &dot, &graphml};
}

std::string formatList() {
    std::string list;
    for (Importer const * importer : importers()) {
        list += (list.empty() ? "" : ", ") + std::string(importer->name());
    }
    return list;
}

bool isOwnDocument(std::string_view bytes) {
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    std::size_t const start = bytes.find_first_not_of(" \t\r\n");
    if (start == std::string_view::npos || bytes[start] != '{') {
        return false;
    }
    JsonGlance const glance = glanceAtJson(bytes, {"localhost", "host", "edge"});
    // A broken document is ours as well: its reader can say what is wrong with the JSON, or with a byte order
    // mark before it.
    return glance.member || !glance.hasMembers || !glance.wellFormed;
}

Importer const & importerFor(std::string_view bytes, std::string const & fileName,
                             ImportOptions const & options) {
    for (Importer const * importer : importers()) {
        if (options.from ? *options.from == importer->name() : importer->recognises(bytes)) {
            return *importer;
        }
    }
    if (options.from) {
        throw InputError(fileName, {},
                         "unknown format " + quotedText(*options.from) + "; expected one of " + formatList());
    }
    if (isOwnDocument(bytes)) {
        throw InputError(fileName, {}, "a version-2 document; expected a topology in one of " + formatList());
    }
    throw InputError(fileName, {},
                     "format not recognised; expected a topology in one of " + formatList() +
                         ", or --from to name it");
}

}  // namespace

std::string Diagnostic::text() const { return locationPrefix(file, position) + "warning: " + message; }

std::vector<std::string_view> importFormats() {
    std::vector<std::string_view> names;
    for (Importer const * importer : importers()) {
        names.push_back(importer->name());
    }
    return names;
}

std::optional<std::string_view> recognise(std::string_view bytes) {
    for (Importer const * importer : importers()) {
        if (importer->recognises(bytes)) {
            return importer->name();
        }
    }
    if (isOwnDocument(bytes)) {
        return ownDocumentFormat;
    }
    return std::nullopt;
}

ImportResult importTopology(std::string_view bytes, std::string const & fileName,
                            ImportOptions const & options) {
    Importer const & importer = importerFor(bytes, fileName, options);
    SourceText const text(fileName, bytes);
    text.requireUtf8();
    return importer.read(text, options);
}

}  // namespace TopologyTools
