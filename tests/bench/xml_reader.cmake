# The benchmark of the XML document reader, included by CMakeLists.txt:
#     cmake --preset native-tests && cmake --build --preset native-tests --target xml_reader_bench
#     build/native/bin/xml_reader_bench
#
# Debian's libpugixml-dev is built for narrow characters, and the reader's counterpart is pugixml built for wide
# ones. `apt-get source pugixml` gets the source of the same package; give its folder (the one that holds src) as
# -DTAVRO_PUGIXML_SOURCE=... . Without it the comparison is with the narrow library, and the result says so.
find_package(benchmark REQUIRED)
find_package(pugixml REQUIRED)
set(TAVRO_PUGIXML_SOURCE "" CACHE PATH "Folder of pugixml's source, to build it for wide characters")

add_executable(xml_reader_bench xml_reader_bench.cpp)
target_link_libraries(xml_reader_bench PRIVATE tavrocli_core tavro_warnings benchmark::benchmark)
if(TAVRO_PUGIXML_SOURCE)
    add_library(pugixml_wide STATIC ${TAVRO_PUGIXML_SOURCE}/src/pugixml.cpp)
    target_include_directories(pugixml_wide SYSTEM PUBLIC ${TAVRO_PUGIXML_SOURCE}/src)
    target_compile_definitions(pugixml_wide PUBLIC PUGIXML_WCHAR_MODE)
    target_link_libraries(xml_reader_bench PRIVATE pugixml_wide)
else()
    target_link_libraries(xml_reader_bench PRIVATE pugixml::pugixml)
endif()
add_test(NAME xml_reader_bench COMMAND xml_reader_bench --short)
