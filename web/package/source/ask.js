/* For the linker alone: what the module imports besides what the standard library needs. */
mergeInto(LibraryManager.library, { ask: function () {} });
