# What only debuggers and the curious read leaves the programs on their way into the package.
file(GLOB programs ${CPACK_TEMPORARY_DIRECTORY}/usr/lib/orvane/*
                   ${CPACK_TEMPORARY_DIRECTORY}/usr/bin/*-sim)
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note ${programs}
                COMMAND_ERROR_IS_FATAL ANY)
