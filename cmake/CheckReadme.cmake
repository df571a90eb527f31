# Fails unless README shows, word for word, what stands in EXAMPLE from its first function on.
file(READ "${README}" readme)
file(READ "${EXAMPLE}" example)
string(FIND "${example}" "static void" start)
string(SUBSTRING "${example}" ${start} -1 program)
string(FIND "${readme}" "${program}" found)
if(start EQUAL -1 OR found EQUAL -1)
  message(FATAL_ERROR "README.md does not show the program of ${EXAMPLE}")
endif()
