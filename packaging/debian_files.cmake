# What Debian's policy adds to the installed tree before it becomes a package.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()
set(usr ${CPACK_TEMPORARY_DIRECTORY}/usr)
# Beyond what CPack strips: what is only the compiler's name.
file(GLOB_RECURSE libraries ${usr}/lib/*.so)
file(GLOB programs ${usr}/bin/*)
foreach(file ${programs} ${libraries})
    execute_process(COMMAND strip --strip-unneeded --remove-section=.comment --remove-section=.note ${file}
        COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(MAKE_DIRECTORY ${usr}/share/doc/zephyra)
file(COPY ${CPACK_ZEPHYRA_PACKAGING}/copyright ${CPACK_ZEPHYRA_PACKAGING}/changelog
    DESTINATION ${usr}/share/doc/zephyra
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
# Debian's zsh keeps site-functions for the administrator.
file(RENAME ${usr}/share/zsh/site-functions ${usr}/share/zsh/vendor-completions)
file(GLOB compressed ${usr}/share/man/man1/*.1 ${usr}/share/doc/zephyra/changelog)
foreach(file ${compressed})
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
