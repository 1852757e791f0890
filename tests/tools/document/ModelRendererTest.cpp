#include "tools/document/ModelRenderer.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/tools/document/DocumentTesting.h"

namespace TopologyTools {
namespace {

class ModelRendering : public DocumentTest {
protected:
    Vel::GenericIf host() const { return status_.member("host", Vel::Name("a")); }

    std::string member(std::string_view name) const {
        return rendered(
            [&](ModelRenderer & renderer) { renderer.member(host(), *hostShape().member(name), nullptr); });
    }
    std::string entry(std::string_view collection, std::string_view key) const {
        return rendered([&](ModelRenderer & renderer) {
            renderer.entry(host().member(collection, Vel::Name(key)), *hostShape().member(collection),
                           nullptr);
        });
    }

    ObjectShape const & hostShape() const { return *shape_.root().member("host")->element; }

    // Tells of every port base the name alone, as somebody could who knows where everything stands.
    template <class Render>
    std::string rendered(Render const & render) const {
        JsonTreeSink sink;
        ModelRenderer renderer(sink, [](Vel::GenericIf const & object) {
            return object.isNull() ? std::nullopt : std::optional("to " + object.attr("name").strRep());
        });
        render(renderer);
        return sink.takeRoot().dump();
    }

    DocumentShape const shape_{*Vel::typeNode(v3)};
    Vel::GenericIf const status_ = readText(
        R"({"host":{"a":{"hostname":"A","mlagPeerLink":"/host/a/port/p","port":{"p":{"type":"port"},"q":{}},)"
        R"("logicalPort":{"p":"/host/a/port/p"}}}})",
        v3);
};

TEST_F(ModelRendering, ShowsOneMemberAlsoByItsDefault) {
    EXPECT_EQ(member("hostname"), R"("A")");
    EXPECT_EQ(member("mlagDomainId"), R"("")");
    EXPECT_EQ(member("mlagSystemId"), R"("00:00:00:00:00:00")");
    EXPECT_EQ(member("mlagState"), R"("unknown")");
    EXPECT_EQ(member("mlagPeerLink"), R"("to p")");
    EXPECT_EQ(member("port"), R"({"p":{"type":"port"},"q":{}})");
    EXPECT_EQ(member("portGroup"), "{}");
    EXPECT_EQ(member("logicalPort"), R"({"p":"to p"})");
    host().attrIs("mlagPeerLink", nullptr);
    EXPECT_EQ(member("mlagPeerLink"), "null");
}

TEST_F(ModelRendering, ShowsWhatStandsUnderAKey) {
    EXPECT_EQ(entry("port", "p"), R"({"type":"port"})");
    EXPECT_EQ(entry("logicalPort", "p"), R"("to p")");
}

TEST_F(ModelRendering, TellsAFaultByThePathThatItWasGiven) {
    JsonTreeSink sink;
    PathStep const root{nullptr, "host"};
    PathStep const at{&root, "a/b"};
    host().attrIs("hostname", Vel::String("\xff"));
    try {
        ModelRenderer(sink, [](auto const &) { return std::nullopt; }).object(host(), hostShape(), &at);
        FAIL() << "no error";
    } catch (DocumentError const & error) {
        EXPECT_STREQ(error.what(),
                     "/host/a~1b/hostname: expected text encoded in UTF-8 (RFC 3629); found \"\\xff\"");
    }
}

}  // namespace
}  // namespace TopologyTools
