// Where a JSON value goes while it is being made: to a stream as text, or into a tree.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace TopologyTools {

// Receives one JSON value, piece by piece. Strings are UTF-8.
class JsonSink {
public:
    virtual ~JsonSink();

    virtual void beginObject() = 0;
    // Every member's value follows its name. REQUIRES: no name comes twice in one object.
    virtual void name(std::string_view name) = 0;
    virtual void endObject() = 0;
    virtual void null() = 0;
    virtual void boolean(bool value) = 0;
    virtual void number(std::uint32_t value) = 0;
    virtual void string(std::string_view value) = 0;
};

// Writes text as it comes. Every member stands on a line of its own, `indent` columns further in than its
// object; a negative `indent` puts everything on one line, without white space.
class JsonTextSink final : public JsonSink {
public:
    JsonTextSink(std::ostream & out, int indent) : out_(out), indent_(indent) {}

    void beginObject() override;
    void name(std::string_view name) override;
    void endObject() override;
    void null() override;
    void boolean(bool value) override;
    void number(std::uint32_t value) override;
    void string(std::string_view value) override;

private:
    void newLine();
    void quoted(std::string_view text);

    std::ostream & out_;
    int indent_;
    std::size_t depth_ = 0;
    bool isEmpty_ = true;  // The innermost open object.
};

// Builds a tree, with the members of every object in the order in which they come.
class JsonTreeSink final : public JsonSink {
public:
    void beginObject() override;
    void name(std::string_view name) override { name_ = name; }
    void endObject() override { open_.pop_back(); }
    void null() override { add(nullptr); }
    void boolean(bool value) override { add(value); }
    void number(std::uint32_t value) override { add(value); }
    void string(std::string_view value) override { add(std::string(value)); }

    nlohmann::ordered_json takeRoot() { return std::move(root_); }

private:
    nlohmann::ordered_json & add(nlohmann::ordered_json value);

    nlohmann::ordered_json root_;
    std::vector<nlohmann::ordered_json *> open_;
    std::string name_;
};

}  // namespace TopologyTools
