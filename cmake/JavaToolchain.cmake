# The language level and warnings of all Java code, and the jars it is compiled against.

set(VOSMAR_JAVAC_FLAGS --release 17 -encoding UTF-8 -Xlint:all -Xdoclint:all/protected -Werror)

find_file(PICOCLI_JAR picocli.jar PATHS /usr/share/java REQUIRED)
