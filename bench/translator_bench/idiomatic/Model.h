// What both models of the peer share.
#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include <boost/signals2/dummy_mutex.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/signals2/signal_type.hpp>

namespace Bench::Peer {

enum class PortType : std::uint32_t { unknown = 0, port = 1, portGroup = 2, mlag = 3 };
enum class MlagState : std::uint32_t { unknown = 0, disabled = 1, inactive = 2, active = 3 };

// A model belongs to one thread: no mutex.
template <class... Arguments>
using Signal = typename boost::signals2::signal_type<
    void(Arguments...), boost::signals2::keywords::mutex_type<boost::signals2::dummy_mutex>>::type;

// Announces what differs from before, and nothing else.
template <class T>
void attributeIs(T & attribute, std::type_identity_t<T> const & value, Signal<> const & changed) {
    if (attribute == value) return;
    attribute = value;
    changed();
}

template <class T>
void attributeIs(std::weak_ptr<T> & attribute, std::shared_ptr<T> const & value, Signal<> const & changed) {
    if (attribute.lock() == value) return;
    attribute = value;
    changed();
}

// The value of a key; a null one where there is none.
template <class Map>
typename Map::mapped_type valueOf(Map const & map, typename Map::key_type const & key) {
    auto const at = map.find(key);
    return at == map.end() ? nullptr : at->second;
}

// Enters a value, or replaces the one of its key; tells whether that changed anything.
template <class Map>
bool valueIs(Map & map, typename Map::key_type const & key, typename Map::mapped_type value) {
    auto const [at, isNew] = map.try_emplace(key, value);
    if (isNew) return true;
    if (at->second == value) return false;
    at->second = std::move(value);
    return true;
}

// The member of a key. `make()` makes it where there is none, and `changed` is announced.
template <class Map, class Make, class Changed>
typename Map::mapped_type memberIs(Map & map, typename Map::key_type const & key, Make const & make,
                                   Changed const & changed) {
    auto const [at, isNew] = map.try_emplace(key);
    if (!isNew) return at->second;
    auto member = at->second = make();
    changed(key);
    return member;
}

}  // namespace Bench::Peer
