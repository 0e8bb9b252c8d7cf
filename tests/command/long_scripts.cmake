# The scripts that take half a minute or more with the sanitizers, and seconds without: the tests of
# a release run them. They start many programs, or read and write long lists.
set(KROFX_LONG_SCRIPTS arguments completion countless_notes large_rows long_lists programs secrets wrong_values)
