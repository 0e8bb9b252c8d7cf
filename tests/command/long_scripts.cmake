# The scripts that take a minute or more with the sanitizers, and seconds without: the tests of a
# release run them. What they print is a matter of lengths, or of many orders or texts.
set(KROFX_LONG_SCRIPTS arguments large_rows long_lists programs secrets)
