#include "tools/cli/OutputStream.h"

namespace TopologyTools {

OutputStream::Buffer::int_type OutputStream::Buffer::overflow(int_type next) {
    sync();
    if (traits_type::eq_int_type(next, traits_type::eof())) return traits_type::not_eof(next);
    return sputc(traits_type::to_char_type(next));
}

int OutputStream::Buffer::sync() {
    output_.write({pbase(), static_cast<std::size_t>(pptr() - pbase())});
    clear();
    return 0;
}

}  // namespace TopologyTools
