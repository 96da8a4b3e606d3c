# What compiler and linker can do so that a fault stays a fault and becomes no way in. Checked on the
# built files by tests/hardening.sh.
add_compile_options(-fstack-protector-strong -fstack-clash-protection -fcf-protection=full
                    -fno-delete-null-pointer-checks -fno-strict-overflow)
add_compile_definitions(_GLIBCXX_ASSERTIONS)
# Needs the optimiser; the sanitizers check what it checks, and more.
add_compile_definitions($<$<CONFIG:Release>:_FORTIFY_SOURCE=3>)
add_compile_options($<$<AND:$<CONFIG:Release>,$<CXX_COMPILER_ID:GNU>>:-ftrivial-auto-var-init=zero>)
add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
include(CheckPIESupported)
check_pie_supported()
