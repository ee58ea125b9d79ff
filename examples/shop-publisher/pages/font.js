
// Once the page is there, so that it never waits for the font service.
addEventListener('load', function () {
  var font = document.createElement('link');
  font.rel = 'stylesheet';
  font.href = 'https://fonts.googleapis.com/css?family={{{fontName}}}:{{{textWeight}}}{{#italic}}i{{/italic}}{{#hasBold}},{{{boldWeight}}}{{#italic}}i{{/italic}}{{/hasBold}}&display=swap';
  document.head.appendChild(font);
});
