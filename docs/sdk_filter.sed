# Makes the comments of the SDK's C headers ones that Doxygen reads.
1s#^/\*$#/** @file#
s#^\( *\)/\*$#\1/**#
s#^\( *\)/\* #\1/** #
s#\([^ ].*\) /\* #\1 /**< #
