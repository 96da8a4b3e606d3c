// The code of the formatting library. In each file that formats it would be most of the time that
// compiling takes; the library's own archive has locales in it.
#include <fmt/format-inl.h>

template FMT_API auto fmt::detail::dragonbox::to_decimal(float x) noexcept
    -> dragonbox::decimal_fp<float>;
template FMT_API auto fmt::detail::dragonbox::to_decimal(double x) noexcept
    -> dragonbox::decimal_fp<double>;
template FMT_API void fmt::detail::buffer<char>::append(const char*, const char*);
template FMT_API void fmt::detail::vformat_to(buffer<char>&, string_view,
                                              basic_format_args<buffer_context<char>>, locale_ref);
template FMT_API auto fmt::detail::thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template FMT_API auto fmt::detail::decimal_point_impl(locale_ref) -> char;
