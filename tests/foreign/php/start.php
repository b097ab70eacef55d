<?php
// Puts PHP's own web server in the place of this process, with services.php behind every address.
// It takes a free port, and names it in its first line.
declare(strict_types=1);

const LACKS_ITS_STACK = 77;

if (!extension_loaded('soap')) {
    exit(LACKS_ITS_STACK);
}
pcntl_exec(PHP_BINARY, [
    '-d', 'display_errors=0', '-d', 'html_errors=0', '-d', 'zlib.output_compression=1',
    '-S', '127.0.0.1:0', __DIR__ . '/services.php',
]);
